#include "Memory.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <malloc.h>

#include <cstdio>

#include "SampleDocuments.h"
#include "VyrAnnStandardXMLParser.h"

namespace {

/// Bytes that the process has in use.
std::size_t InUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

}  // namespace

void PrintMemoryRatios() {
  for (const SampleDocument& sample : SampleDocuments()) {
    const std::size_t before = InUse();
    xmlDoc* dom = xmlReadFile(sample.path.c_str(), nullptr, XML_PARSE_HUGE);
    const std::size_t between = InUse();
    VyrAnnStandardXMLParser document;
    document.DecodeXML(sample.path, 1);
    const std::size_t after = InUse();
    const auto ours = static_cast<double>(after - between);
    const auto theirs = static_cast<double>(between - before);
    const double ratio = ours / theirs;
    std::printf("%-58s %9.3f %9.2f  %s\n",
                ("memory of the tree " + sample.name + " / libxml2's DOM").c_str(), ratio, 1.0,
                ratio <= 1.0 ? "kept" : "NOT KEPT");
    xmlFreeDoc(dom);
  }
}
