#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DiagnosticsCapture.h"
#include "StandardDocumentBuilder.h"
#include "VyrBaseUnknown.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr VyrSourceUnit kUnit("Caller");

/// What the builder of a host supports, and what it was told.
struct Host {
  HRESULT result = S_OK;
  bool hasBuilder = true;
  std::vector<std::string_view> options;
  HRESULT optionResult = S_OK;
  std::vector<std::string> set;
};
Host host;

class Builder final : public VyrImplements<VyrIXMLDOMDocumentBuilder> {
 public:
  std::span<const std::string_view> GetOptions() override { return host.options; }
  HRESULT SetOption(std::string_view option, std::string_view value) override {
    host.set.push_back(std::string(option) + "=" + std::string(value));
    return host.optionResult;
  }
  HRESULT BuildFromFile(VyrUnicodeView, VyrIDOMDocument_var&) override { return E_NOTIMPL; }
  HRESULT BuildFromString(VyrUnicodeView, VyrIDOMDocument_var&) override { return E_NOTIMPL; }
  const VyrProblem& GetProblem() override { return problem_; }

 private:
  VyrProblem problem_;
};

class DocumentBuilder : public testing::Test {
 protected:
  DocumentBuilder() {
    host = {};
    VyrSetDOMDocumentBuilderFactory([](VyrIXMLDOMDocumentBuilder_var& made) {
      if (host.hasBuilder) made = new Builder;
      return host.result;
    });
  }
  ~DocumentBuilder() override { VyrSetDOMDocumentBuilderFactory(nullptr); }

  HRESULT Make() { return MakeStandardDocumentBuilder(kUnit, trace, builder); }

  VyrTrace trace{"TestChannel", ""};
  VyrIXMLDOMDocumentBuilder_var builder;
  DiagnosticsCapture capture;
};

TEST_F(DocumentBuilder, KnowsNamespacesAndDoesNotValidate) {
  host.options = {"Another", kVyrDoValidation, kVyrEnableNameSpaces};
  trace.Switch(true);
  EXPECT_EQ(Make(), S_OK);
  EXPECT_TRUE(builder);
  EXPECT_THAT(host.set, ElementsAre("VyrDoValidation=false", "VyrEnableNameSpaces=true"));
  EXPECT_THAT(capture.traces,
              ElementsAre("VyrIXMLDOMDocumentBuilder supported options:\n", "  Another\n",
                          "  VyrDoValidation\n", "  VyrEnableNameSpaces\n",
                          "VyrDoValidation option found\n", "VyrEnableNameSpaces option found\n"));
  EXPECT_THAT(capture.errors, IsEmpty());
}

TEST_F(DocumentBuilder, ThatCannotBeToldIsTakenNotToValidate) {
  host.options = {kVyrEnableNameSpaces};
  trace.Switch(true);
  EXPECT_EQ(Make(), S_OK);
  EXPECT_THAT(host.set, ElementsAre("VyrEnableNameSpaces=true"));
  EXPECT_THAT(
      capture.traces,
      ElementsAre("VyrIXMLDOMDocumentBuilder supported options:\n", "  VyrEnableNameSpaces\n",
                  "Warning: VyrDoValidation is not supported; we assume that parser is "
                  "not validating\n",
                  "VyrEnableNameSpaces option found\n"));
}

TEST_F(DocumentBuilder, WithoutNamespacesIsReportedAsTheCallersFailure) {
  host.options = {kVyrDoValidation};
  EXPECT_EQ(Make(), E_FAIL);
  EXPECT_THAT(CheckTexts(capture.errors), ElementsAre(": Namespaces not supported! [Caller]"));
  EXPECT_THAT(capture.traces, IsEmpty());
}

TEST_F(DocumentBuilder, ThatRefusesAnOptionIsUnexpected) {
  host.optionResult = E_FAIL;
  for (const std::string_view option : {kVyrDoValidation, kVyrEnableNameSpaces}) {
    capture.Clear();
    host.options = {option, kVyrEnableNameSpaces};
    EXPECT_EQ(Make(), E_UNEXPECTED);
    EXPECT_THAT(CheckTexts(capture.errors),
                ElementsAre("BOOL IS FALSE: the builder refuses an option [Caller]"));
  }
}

TEST_F(DocumentBuilder, ThatCannotBeMadeIsUnexpected) {
  host.result = E_FAIL;
  EXPECT_EQ(Make(), E_UNEXPECTED);
  host.result = S_OK;
  host.hasBuilder = false;
  builder = nullptr;
  EXPECT_EQ(Make(), E_UNEXPECTED);
  EXPECT_THAT(CheckTexts(capture.errors), ElementsAre("BOOL IS FALSE: no document builder [Caller]",
                                                      "ON POINTER : NULL handler [Caller]"));
}

}  // namespace
