#include "VyrDrwParseStandard.h"

#include "ConversionNotes.h"
#include "LegacyTextReader.h"
#include "UpgradeOmissions.h"
#include "VyrAnnStandardXMLParser.h"
#include "VyrDftStdPersistence.h"
#include "VyrDrwParseParameter.h"
#include "VyrDrwParseStandardUnit.h"
#include "VyrFiles.h"
#include "VyrWithinMemory.h"

// Reading a standard and telling what it is.

VyrDrwParseStandard::VyrDrwParseStandard(const VyrUnicodeString& fileName)
    : fileName_(fileName), omissions_(std::make_unique<UpgradeOmissions>()) {}

VyrDrwParseStandard::~VyrDrwParseStandard() = default;

void VyrDrwParseStandard::Decode() {
  // Also after a failure, whose problem and empty document stay: an object reads its file once.
  if (isDecodeTried_) return;
  static_cast<void>(VyrWithinMemory(problem_, [this] {
    DecodeXML();
    return S_OK;
  }));
  if (decoded_ == 0) parentStandard_ = {};
}

HRESULT VyrDrwParseStandard::DecodeText() {
  return VyrWithinMemory([this] { return DecodeParameters(); },
                         [this] { return RefuseForMemory(); });
}

/// Of work that memory ran out for, nothing is left to be converted or saved.
HRESULT VyrDrwParseStandard::RefuseForMemory() {
  document_.reset();
  parameters_.clear();
  decoded_ = 0;
  version_ = 0;
  parentStandard_ = {};
  textFaults_.clear();
  numOfTextFaults_ = 0;
  notes_.clear();
  omissions_->Clear();
  VyrSayOutOfMemory(problem_);
  return E_FAIL;
}

void VyrDrwParseStandard::DecodeXML() {
  if (decoded_ != 0 || fileName_.IsEmpty()) return;
  if (!kParseStandardUnit.Check(document_ == nullptr, "a document is already there")) return;
  isDecodeTried_ = true;
  problem_ = {};
  // Stays when the file cannot be read, and when memory runs out on the way: what was read before
  // must not pass for a standard.
  document_ = std::make_unique<VyrAnnStandardXMLParser>();
  version_ = document_->GetVersion();
  auto read = std::make_unique<VyrAnnStandardXMLParser>();
  if (read->DecodeXML(fileName_, 1) != 0) {
    problem_ = read->GetProblem();
    return;
  }
  const int version = read->GetVersion();
  DetermineParentStandard(read->GetValueWithPath("Root.Dimension.ParentStandard"),
                          read->GetValueWithPath("Root.Dimension.TXTDatumMode"));
  version_ = version;
  document_ = std::move(read);
  decoded_ = 1;
}

HRESULT VyrDrwParseStandard::DecodeParameters() {
  if (!kParseStandardUnit.Check(decoded_ == 0 && document_ == nullptr, "already decoded")) {
    return E_UNEXPECTED;
  }
  problem_ = {};
  textFaults_.clear();
  numOfTextFaults_ = 0;
  std::string text;
  if (const std::string problem = VyrReadFile(fileName_, text); !problem.empty()) {
    problem_ = {0, problem, false};
    return E_FAIL;
  }
  LegacyTextReader reader;
  if (!reader.Read(text)) {
    textFaults_ = reader.GetFaults();
    numOfTextFaults_ = reader.GetFaultCount();
    problem_ = textFaults_.front();
    return E_FAIL;
  }
  parameters_ = reader.TakeParameters();
  notes_ = reader.GetNotes();
  decoded_ = 1;
  version_ = 0;
  const VyrDrwParseParameter* parent = GetParameter("ParentStandard");
  const VyrDrwParseParameter* datumMode = GetParameter("TXTDatumMode");
  const auto valueOf = [](const VyrDrwParseParameter* parameter) {
    return parameter == nullptr ? VyrUnicodeString() : parameter->GetValue();
  };
  DetermineParentStandard(valueOf(parent), valueOf(datumMode));
  if (auto note = NoteOnDatumMode(parent, datumMode)) notes_.push_back(*std::move(note));
  return S_OK;
}

void VyrDrwParseStandard::DetermineParentStandard(VyrUnicodeView name, VyrUnicodeView datumMode) {
  parentStandard_ = name;
  if (name != "ANSI") return;
  if (datumMode == "1") {
    parentStandard_ = "ASME";
  } else if (datumMode != "2") {
    kParseStandardUnit.Raise("Invalid TXTDatumMode value! Can't determine parent standard");
  }
}

int VyrDrwParseStandard::GetParentStandardId() const {
  if (parentStandard_ == "ISO") return ISO;
  if (parentStandard_ == "JIS") return JIS;
  if (parentStandard_ == "ASME") return ASME;
  if (parentStandard_ == "ANSI") return ANSI;
  kParseStandardUnit.Raise("Unknown parent standard!!");
  return 0;
}

const std::vector<VyrDrwUpgradeOmission>& VyrDrwParseStandard::GetUpgradeOmissions() const {
  return omissions_->Get();
}

std::size_t VyrDrwParseStandard::GetNumOfUpgradeOmissions() const {
  return omissions_->GetCount();
}

int VyrDrwParseStandard::GetCurrentVersion() {
  return VyrDftStdPersistence::GetCurrentVersion();
}

VyrDrwParseParameter* VyrDrwParseStandard::GetParameter(const VyrUnicodeString& name) const {
  if (name.IsEmpty()) return nullptr;
  for (const auto& parameter : parameters_) {
    if (parameter != nullptr && parameter->GetName() == name) return parameter.get();
  }
  return nullptr;
}
