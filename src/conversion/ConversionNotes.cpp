#include "ConversionNotes.h"

#include "LegacyValues.h"

using Note = VyrDrwConversionNote;

std::optional<Note> NoteOnDatumMode(const VyrDrwParseParameter* parentStandard,
                                    const VyrDrwParseParameter* datumMode) {
  if (parentStandard == nullptr || datumMode == nullptr) return std::nullopt;
  const std::string_view mode = datumMode->GetValue().View();
  if (!(parentStandard->GetValue() == "ANSI") || mode == "1" || mode == "2") return std::nullopt;
  return Note{Note::DatumMode, datumMode->GetLine(), datumMode->GetName(), mode, {}};
}

void AddNotesOnParameters(const std::vector<std::unique_ptr<VyrDrwParseParameter>>& parameters,
                          const VyrAnnStandardXMLNode* dimension, std::vector<Note>& notes) {
  for (const auto& parameter : parameters) {
    if (parameter == nullptr || parameter->GetLine() == 0) continue;
    const VyrUnicodeString& name = parameter->GetName();
    const VyrUnicodeString& value = parameter->GetValue();
    const VyrAnnStandardXMLNode_var node(dimension == nullptr ? nullptr
                                                              : dimension->GetNodeByName(name));
    if (!node || node->GetValues().empty()) {
      notes.push_back({Note::WithoutPlace, parameter->GetLine(), name, value, {}});
      continue;
    }
    const VyrUnicodeString& became = node->GetValues().front()->GetValue();
    if (IsSameValue(parameter->GetType(), value.View(), became.View())) continue;
    notes.push_back({Note::SetByFormat, parameter->GetLine(), name, value, became});
  }
}
