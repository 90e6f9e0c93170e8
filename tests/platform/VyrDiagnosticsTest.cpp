#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "DiagnosticsCapture.h"
#include "VyrDiagnostics.h"
#include "VyrUtf8.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr VyrSourceUnit kUnit("VyrUnit");

std::string ReportOf(const char* kind, const std::string& message, const char* unit, int line) {
  std::string number = std::to_string(line);
  if (number.size() < 4) number.insert(0, 4 - number.size(), ' ');
  return std::string(">> ASSERTION FAILED ") + kind + ": " + message + " [File: " + unit + ":" +
         number + "].<<\n";
}

/// The report that `check`, called on this very line, is expected to make in an ordinary run.
template <class Check>
std::string ErrorOf(Check check) {
  const DiagnosticsCapture capture;
  check();
  return capture.errors.size() == 1 ? capture.errors.front() : "not one report";
}

TEST(Diagnostics, ReportNamesKindMessageUnitAndLine) {
  const int line = __LINE__;
  EXPECT_EQ(ErrorOf([] { kUnit.Raise("Failed to save"); }),
            ReportOf("", "Failed to save", "VyrUnit", line + 1));
  EXPECT_EQ(ErrorOf([] { EXPECT_FALSE(kUnit.Check(false, "Invalid node")); }),
            ReportOf("BOOL IS FALSE", "Invalid node", "VyrUnit", line + 3));
  EXPECT_EQ(ErrorOf([] { EXPECT_FALSE(kUnit.CheckPointer(nullptr)); }),
            ReportOf("ON POINTER ", "NULL handler", "VyrUnit", line + 5));
  EXPECT_EQ(ErrorOf([] { EXPECT_FALSE(kUnit.CheckPointer(nullptr, "NULL node")); }),
            ReportOf("ON POINTER ", "NULL node", "VyrUnit", line + 7));
  EXPECT_EQ(ErrorOf([] { EXPECT_FALSE(kUnit.Check(false)); }),
            ReportOf("BOOL IS FALSE", "", "VyrUnit", line + 9));
}

TEST(Diagnostics, CheckThatHoldsReportsNothing) {
  for (const bool development : {false, true}) {
    const DiagnosticsCapture capture(development);
    EXPECT_TRUE(kUnit.Check(true, "message"));
    EXPECT_TRUE(kUnit.CheckPointer(&kUnit));
    EXPECT_THAT(capture.errors, IsEmpty());
    EXPECT_THAT(capture.printed, IsEmpty());
    EXPECT_THAT(capture.abends, IsEmpty());
  }
}

TEST(Diagnostics, MessageIsCutAtFortyBytesAndNeverInsideACharacter) {
  const std::string a39(39, 'a');
  struct {
    std::string message;
    std::string shown;
  } const cases[] = {
      {a39, a39},
      {a39 + "b", a39 + "b"},
      {a39 + "bc", a39 + "b"},
      {a39 + "\u00E9", a39},
      {a39.substr(1) + "\u00E9", a39.substr(1) + "\u00E9"},
      {a39.substr(1) + "\u5BF8", a39.substr(1)},
      {a39.substr(2) + "\U0001F600x", a39.substr(2)},
      {std::string(1000, 'm'), std::string(40, 'm')},
  };
  for (const auto& test : cases) {
    const std::string report = ErrorOf([&] { kUnit.Raise(test.message); });
    EXPECT_EQ(CheckText(report), ": " + test.shown + " [VyrUnit]");
    EXPECT_EQ(VyrFindInvalidUtf8(report), std::string::npos);
  }
}

TEST(Diagnostics, LongestReportIsWholeAndFitsItsBuffer) {
  const std::string unitName(200, 'u');
  const VyrSourceUnit unit(unitName.c_str());
  const std::string report =
      ErrorOf([&] { EXPECT_FALSE(unit.Check(false, std::string(300, 'm'))); });
  EXPECT_LT(report.size(), 287u);
  EXPECT_EQ(CheckText(report),
            "BOOL IS FALSE: " + std::string(40, 'm') + " [" + std::string(128, 'u') + "]");
  EXPECT_EQ(report.substr(report.size() - 5), "].<<\n");
}

TEST(Diagnostics, DevelopmentStageDecidesWhereAReportGoes) {
  for (const bool development : {false, true}) {
    std::vector<std::string> order;
    const bool wasDevelopment = VyrDevelopmentStage();
    VyrSetDevelopmentStage(development);
    VyrDiagnosticSinks previous =
        VyrSetDiagnosticSinks({[&](std::string_view) { order.push_back("print"); },
                               [&](std::string_view) { order.push_back("error log"); },
                               [&](std::string_view) { order.push_back("abend log"); },
                               [&](std::string_view) { order.push_back("trace"); }});
    kUnit.Raise("message");
    VyrSetDiagnosticSinks(std::move(previous));
    VyrSetDevelopmentStage(wasDevelopment);
    if (development) {
      EXPECT_THAT(order, ElementsAre("print", "abend log"));
    } else {
      EXPECT_THAT(order, ElementsAre("error log"));
    }
  }
}

TEST(Diagnostics, SinksReceiveTheTextAsItIs) {
  const DiagnosticsCapture capture;
  VyrSysLogError("error %s");
  VyrSysLogAbend("abend");
  VyrTraceOutput("trace\n");
  EXPECT_THAT(capture.errors, ElementsAre("error %s"));
  EXPECT_THAT(capture.abends, ElementsAre("abend"));
  EXPECT_THAT(capture.traces, ElementsAre("trace\n"));
  EXPECT_THAT(capture.printed, IsEmpty());
}

TEST(Diagnostics, InstallingSinksGivesBackTheOnesBefore) {
  const DiagnosticsCapture outer;
  {
    const DiagnosticsCapture inner;
    VyrSysLogError("inner");
    EXPECT_THAT(inner.errors, ElementsAre("inner"));
  }
  VyrSysLogError("outer");
  EXPECT_THAT(outer.errors, ElementsAre("outer"));
}

TEST(Diagnostics, EveryDefaultWritesToStandardError) {
  VyrDiagnosticSinks previous = VyrSetDiagnosticSinks({});
  testing::internal::CaptureStderr();
  VyrSysLogError("error,");
  VyrSysLogAbend("abend,");
  VyrTraceOutput("trace");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "error,abend,trace");
  VyrSetDiagnosticSinks(std::move(previous));
}

TEST(DiagnosticsDeathTest, DefaultAbendEndsTheProcessInADevelopmentStageOnly) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_FALSE(VyrDevelopmentStage()) << "unless the host says otherwise";
  EXPECT_EXIT(
      {
        VyrSetDevelopmentStage(true);
        VyrSysLogAbend("the end");
      },
      testing::KilledBySignal(SIGABRT), "the end");
  EXPECT_EXIT(
      {
        VyrSetDevelopmentStage(true);
        kUnit.Raise("broken");
      },
      testing::KilledBySignal(SIGABRT), "ASSERTION FAILED : broken");
  EXPECT_EXIT(
      {
        VyrSysLogAbend("logged");
        kUnit.Raise("goes on");
        std::exit(7);
      },
      testing::ExitedWithCode(7), "goes on");
}

TEST(Diagnostics, FatalErrorGoesToAHostThatReceivesAbendsAndReturns) {
  for (const bool development : {false, true}) {
    const DiagnosticsCapture capture(development);
    VyrFatalError("the end %s");
    EXPECT_THAT(capture.abends, ElementsAre("the end %s"));
    EXPECT_THAT(capture.errors, IsEmpty());
    EXPECT_THAT(capture.printed, IsEmpty());
  }
}

TEST(DiagnosticsDeathTest, FatalErrorEndsTheProcessInEveryStage) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  for (const bool development : {false, true}) {
    EXPECT_EXIT(
        {
          VyrSetDevelopmentStage(development);
          VyrFatalError("the end");
        },
        testing::KilledBySignal(SIGABRT), "the end");
  }
}

// Last, since it renumbers the lines of this file.
TEST(Diagnostics, LineTakesFourPlacesAndMoreWhereItNeedsThem) {
#line 7
  EXPECT_EQ(ErrorOf([] { kUnit.Raise("m"); }), ">> ASSERTION FAILED : m [File: VyrUnit:   7].<<\n");
#line 12345
  EXPECT_EQ(ErrorOf([] { kUnit.Raise("m"); }),
            ">> ASSERTION FAILED : m [File: VyrUnit:12345].<<\n");
}

TEST(Diagnostics, ControlCharactersForgeNoLineOfTheErrorLog) {
  const DiagnosticsCapture capture;
  VyrSysLogError("a\nb\x1b[2J\x7f.xml\n");
  VyrSysLogError("caf\xc3\xa9\n");
  VyrSysLogError("no\nend");
  VyrSysLogError("");
  EXPECT_EQ(capture.errors,
            (std::vector<std::string>{"a?b?[2J?.xml\n", "caf\xc3\xa9\n", "no?end", ""}));
}

}  // namespace
