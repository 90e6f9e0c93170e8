// A small drafting module: what it needs of the standard ISO, and an element that looks as it says.

#include <cstdio>
#include <memory>
#include <utility>

#include "VyrBaseUnknown.h"
#include "VyrDftStandardServices.h"
#include "VyrDftStyleToolbox.h"
#include "VyrHolVisuEventsToolbox.h"
#include "VyrIDftElementWithStandard.h"
#include "VyrIDftStyleManager.h"

bool PrintSheetFormats(VyrIDftStandard& standard) {
  VyrDrwStdSheetFormat* found = nullptr;
  int count = 0;
  if (VyrFailed(VyrDftStandardServices::GetSheetFormats(&standard, &found, count))) return false;
  const std::unique_ptr<VyrDrwStdSheetFormat[]> formats(found);
  for (int i = 0; i < count; ++i) {
    std::printf("sheet %s: %g x %g mm\n", formats[i].name.CString(), formats[i].width,
                formats[i].height);
  }
  return true;
}

bool PrintDimensionValues(VyrIDftStandard& standard) {
  VyrUnicodeString parent;
  double overrun = 0;
  int reachesCenter = 0;
  if (VyrFailed(standard.GetValue("Dimension.ParentStandard", 1, parent)) ||
      VyrFailed(standard.GetValue("Dimension.DIMLOverrun", 1, overrun)) ||
      VyrFailed(standard.GetValue("Dimension.DIMLDiameterExtReachCenter", 1, reachesCenter))) {
    return false;
  }
  std::printf("dimensions follow %s: extension lines overrun by %.1f mm, diameters %s the centre\n",
              parent.CString(), overrun, reachesCenter != 0 ? "reach" : "stop before");
  return true;
}

bool PrintStyle(VyrIDftStyle& style) {
  unsigned short* found = nullptr;
  if (VyrFailed(style.GetName(&found))) return false;
  const std::unique_ptr<unsigned short[]> name(found);
  double size = 0;
  if (VyrFailed(style.GetValue("Font.Size", 1, size))) return false;
  std::printf("text style %s: size %.1f mm\n", VyrUnicodeString(name.get()).CString(), size);
  return true;
}

bool PrintTextStyles(VyrIDftStandard& standard) {
  const auto manager = VyrQuery<VyrIDftStyleManager>(&standard);
  if (!manager) return false;
  const std::unique_ptr<unsigned short[]> type(VyrUnicodeString("Text").NewUtf16Copy());
  VyrIUnknownList* found = nullptr;
  if (VyrFailed(manager->GetAvailableStyles(type.get(), &found, nullptr))) return false;
  const VyrIUnknownList_var styles(found);
  unsigned int count = 0;
  styles->Count(&count);
  for (unsigned int i = 0; i < count; ++i) {
    IUnknown* item = nullptr;
    styles->Item(i, &item);
    const VyrVar<IUnknown> object(item);
    const auto style = VyrQuery<VyrIDftStyle>(object.Get());
    if (!style || !PrintStyle(*style)) return false;
  }
  return true;
}

class Note final
    : public VyrImplements<VyrIDftElementWithStandard, VyrIDftElementWithStyle, VyrIVisProperties> {
 public:
  explicit Note(VyrIDftStandard_var standard) : standard_(std::move(standard)) {}

  HRESULT GetStandard(VyrIDftStandard** standard) override {
    *standard = standard_.NewReference();
    return S_OK;
  }

  HRESULT ApplyStyle(VyrIDftStyle* style, DftStyleApplyMode,
                     DftStyleApplyContext context) override {
    if (VyrFailed(style->GetValue("Font.Size", 1, size_)) ||
        VyrFailed(style->GetValue("Text.Justification", 1, justification_))) {
      return E_FAIL;
    }
    return VyrDftStyleToolbox::SetGraphicProperties(style, "Graphic", this, 0, 0, context, 0);
  }

  HRESULT IsPropertyOnGeometryType(VyrVisPropertyType, VyrVisGeometryType geometry) override {
    return geometry == VyrVisLines ? S_OK : S_FALSE;
  }
  HRESULT GetPropertiesAtt(VyrVisPropertyType, VyrVisGeometryType,
                           VyrVisPropertiesValues& values) override {
    values = lines_;
    return S_OK;
  }
  HRESULT SetPropertiesAtt(VyrVisPropertyType, VyrVisGeometryType,
                           const VyrVisPropertiesValues& values) override {
    lines_ = values;
    return S_OK;
  }

  void Print() const {
    const VyrVisColor color = lines_.color.value_or(VyrVisColor());
    std::printf("the note: size %.1f mm, justification %s\n", size_, justification_.CString());
    std::printf("its lines: thickness %u, line type %u, colour %u %u %u\n",
                lines_.width.value_or(0), lines_.lineType.value_or(0), color.red, color.green,
                color.blue);
  }

 private:
  VyrIDftStandard_var standard_;
  double size_ = 0;
  VyrUnicodeString justification_;
  VyrVisPropertiesValues lines_;
};

bool StyleNote(const VyrIDftStandard_var& standard) {
  VyrHolVisuEventsToolbox::SetModifyListener([](auto&&...) {
    std::puts("a view is drawn anew");
    return S_OK;
  });
  const VyrVar<Note> note(new Note(standard));
  IUnknown* const element = static_cast<VyrIDftElementWithStyle*>(note.Get());
  if (VyrFailed(VyrDftStyleToolbox::ApplyStyle(element, "Text", "ViewText", DftStyleApplyAll,
                                               DftStyleOnCreation, ""))) {
    return false;
  }
  note->Print();
  return true;
}

int main() {
  const VyrIDrwStandard_var iso = VyrDftStandardServices::GetOOTBStandard("ISO");
  const auto standard = VyrQuery<VyrIDftStandard>(iso.Get());
  const bool isDone = standard && PrintSheetFormats(*standard) && PrintDimensionValues(*standard) &&
                      PrintTextStyles(*standard) && StyleNote(standard);
  VyrDftStandardServices::ReleaseOOTBStandards();
  if (!isDone) std::fputs("the standard ISO could not be used\n", stderr);
  return isDone ? 0 : 1;
}
