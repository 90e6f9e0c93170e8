#pragma once

#include <memory>
#include <utility>

#include "VyrDrwParseKeywordTable.h"
#include "VyrUnicodeString.h"

/// What the parameters of a tolerance or a numerical display have in common.
struct VyrDrwParseGroup {
  VyrUnicodeString description;  ///< its name
  VyrUnicodeString section;      ///< "TOLERANCE" or "NUMERICAL_DISPLAY"
};

/// A parameter of the old parameter set with its value: a general one, or one of a group (a
/// tolerance or a numerical display).
class VyrDrwParseParameter {
 public:
  /// A general parameter, of a line of its text.
  VyrDrwParseParameter(VyrUnicodeView name, VyrDrwParseKeyword::Type type, VyrUnicodeView value,
                       int line = 0)
      : name_(name), value_(value), line_(line), type_(type) {}
  /// A parameter of the group `description` of a section ("TOLERANCE", "NUMERICAL_DISPLAY").
  VyrDrwParseParameter(VyrUnicodeView name, VyrDrwParseKeyword::Type type, VyrUnicodeView value,
                       VyrUnicodeView description, VyrUnicodeView section)
      : VyrDrwParseParameter(
            name, type, value,
            std::make_shared<VyrDrwParseGroup>(VyrDrwParseGroup{description, section})) {}
  /// The same for one of several parameters of a group, which share what is said of it.
  VyrDrwParseParameter(VyrUnicodeView name, VyrDrwParseKeyword::Type type, VyrUnicodeView value,
                       std::shared_ptr<const VyrDrwParseGroup> group)
      : name_(name), value_(value), group_(std::move(group)), type_(type) {}
  VyrDrwParseParameter(const VyrDrwParseParameter&) = delete;
  VyrDrwParseParameter& operator=(const VyrDrwParseParameter&) = delete;
  virtual ~VyrDrwParseParameter() = default;

  /// Name of the group; empty for a general parameter.
  virtual VyrUnicodeString GetDescription() const {
    return group_ ? group_->description : VyrUnicodeString();
  }
  /// Name of the section; empty for a general parameter.
  virtual VyrUnicodeString GetSection() const {
    return group_ ? group_->section : VyrUnicodeString();
  }
  /// Appends the lines of a version-0 standard that hold the parameter.
  virtual void Write(VyrUnicodeString& text) const;

  const VyrUnicodeString& GetName() const { return name_; }
  const VyrUnicodeString& GetValue() const { return value_; }
  VyrDrwParseKeyword::Type GetType() const { return type_; }
  /// Of a general parameter, where it stands in its text; 0 when it is of none.
  int GetLine() const { return line_; }

 private:
  VyrUnicodeString name_;
  VyrUnicodeString value_;
  std::shared_ptr<const VyrDrwParseGroup> group_;
  int line_ = 0;
  VyrDrwParseKeyword::Type type_;
};
