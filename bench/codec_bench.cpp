#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <unistd.h>

#include <pugixml.hpp>

#include "Ratios.h"
#include "SampleDocuments.h"
#include "VyrAnnStandardXMLParser.h"

// Decoding and encoding a standard beside what a plain XML library needs for the bare document.

namespace {

void DecodeOurs(benchmark::State& state, const std::string& path) {
  for (auto _ : state) {
    VyrAnnStandardXMLParser document;
    if (document.DecodeXML(path, 1) != 0) state.SkipWithError("not decoded");
    state.PauseTiming();  // libxml2's document is not freed in its time either
    { const VyrAnnStandardXMLParser dying = std::exchange(document, VyrAnnStandardXMLParser()); }
    state.ResumeTiming();
  }
}

void DecodeLibxml2(benchmark::State& state, const std::string& path) {
  for (auto _ : state) {
    xmlDoc* document = xmlReadFile(path.c_str(), nullptr, XML_PARSE_HUGE);
    if (document == nullptr) state.SkipWithError("not parsed");
    state.PauseTiming();
    xmlFreeDoc(document);
    state.ResumeTiming();
  }
}

void DecodePugixml(benchmark::State& state, const std::string& path) {
  for (auto _ : state) {
    pugi::xml_document document;
    if (!document.load_file(path.c_str())) state.SkipWithError("not parsed");
  }
}

void EncodeOurs(benchmark::State& state, const std::string& path) {
  VyrAnnStandardXMLParser document;
  document.DecodeXML(path, 1);
  for (auto _ : state) {
    VyrUnicodeString text;
    document.SaveInString(text);
    benchmark::DoNotOptimize(text);
  }
}

void EncodeLibxml2(benchmark::State& state, const std::string& path) {
  // Without the blanks between elements the library lays the text out anew, as we do.
  xmlDoc* document = xmlReadFile(path.c_str(), nullptr, XML_PARSE_HUGE | XML_PARSE_NOBLANKS);
  for (auto _ : state) {
    xmlChar* text = nullptr;
    int size = 0;
    xmlDocDumpFormatMemory(document, &text, &size, 1);
    xmlFree(text);
  }
  xmlFreeDoc(document);
}

void SaveOurs(benchmark::State& state, const std::string& path) {
  VyrAnnStandardXMLParser document;
  document.DecodeXML(path, 1);
  const std::string target = path + ".saved";
  for (auto _ : state) {
    if (document.SaveInFile(target) < 0) state.SkipWithError("not saved");
  }
  ::unlink(target.c_str());
}

/// What the operating system needs to write and sync the same bytes.
void WriteAndSync(benchmark::State& state, const std::string& text, const std::string& path) {
  const std::string target = path + ".written";
  for (auto _ : state) {
    const int file = ::open(target.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const bool isWritten =
        ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    if (!isWritten || ::fsync(file) != 0) state.SkipWithError("not written");
    ::close(file);
  }
  ::unlink(target.c_str());
}

[[maybe_unused]] const bool registered = [] {
  for (const SampleDocument& sample : SampleDocuments()) {
    const std::string& name = sample.name;
    const auto add = [&](const std::string& what, auto run) {
      benchmark::RegisterBenchmark((what + "_" + name).c_str(), run)
          ->Unit(benchmark::kMillisecond)
          ->UseRealTime();
    };
    const std::string path = sample.path;
    const std::string text = sample.text;
    add("decode", [=](benchmark::State& state) { DecodeOurs(state, path); });
    add("libxml2_xmlReadFile", [=](benchmark::State& state) { DecodeLibxml2(state, path); });
    add("pugixml_load_file", [=](benchmark::State& state) { DecodePugixml(state, path); });
    add("encode", [=](benchmark::State& state) { EncodeOurs(state, path); });
    add("libxml2_dump", [=](benchmark::State& state) { EncodeLibxml2(state, path); });
    add("save", [=](benchmark::State& state) { SaveOurs(state, path); });
    add("write_and_fsync", [=](benchmark::State& state) { WriteAndSync(state, text, path); });
    Ratios().push_back({"decode " + name + " / libxml2 xmlReadFile", "decode_" + name,
                        "libxml2_xmlReadFile_" + name, 1.0});
    Ratios().push_back({"decode " + name + " / pugixml load_file", "decode_" + name,
                        "pugixml_load_file_" + name, 0});
    Ratios().push_back({"encode " + name + " / libxml2 xmlDocDumpFormatMemory", "encode_" + name,
                        "libxml2_dump_" + name, 1.0});
    Ratios().push_back({"save to a file " + name + " / write and fsync of the same bytes",
                        "save_" + name, "write_and_fsync_" + name, 0});
  }
  const auto& [little, large] = SampleDocuments();
  const double growth =
      static_cast<double>(large.text.size()) / static_cast<double>(little.text.size());
  for (const std::string what : {"decode", "encode"}) {
    Ratios().push_back({what + " a byte of " + large.name + " / a byte of " + little.name,
                        what + "_" + large.name, what + "_" + little.name, 2.0, growth});
  }
  return true;
}();

}  // namespace
