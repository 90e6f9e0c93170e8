#pragma once

#include "VyrDrwParseKeywordTable.h"
#include "VyrUnicodeString.h"

/// A parameter of the old parameter set with its value: a general one, or one of a group (a
/// tolerance or a numerical display).
class VyrDrwParseParameter {
 public:
  /// A general parameter.
  VyrDrwParseParameter(VyrUnicodeView name, VyrDrwParseKeyword::Type type, VyrUnicodeView value)
      : VyrDrwParseParameter(name, type, value, {}, {}) {}
  /// A parameter of the group `description` of a section ("TOLERANCE", "NUMERICAL_DISPLAY").
  VyrDrwParseParameter(VyrUnicodeView name, VyrDrwParseKeyword::Type type, VyrUnicodeView value,
                       VyrUnicodeView description, VyrUnicodeView section)
      : name_(name), value_(value), description_(description), section_(section), type_(type) {}
  VyrDrwParseParameter(const VyrDrwParseParameter&) = delete;
  VyrDrwParseParameter& operator=(const VyrDrwParseParameter&) = delete;
  virtual ~VyrDrwParseParameter() = default;

  /// Name of the group; empty for a general parameter.
  virtual VyrUnicodeString GetDescription() const { return description_; }
  /// Name of the section; empty for a general parameter.
  virtual VyrUnicodeString GetSection() const { return section_; }
  /// Appends the lines of a version-0 standard that hold the parameter.
  virtual void Write(VyrUnicodeString& text) const;

  const VyrUnicodeString& GetName() const { return name_; }
  const VyrUnicodeString& GetValue() const { return value_; }

 private:
  VyrUnicodeString name_;
  VyrUnicodeString value_;
  VyrUnicodeString description_;
  VyrUnicodeString section_;
  VyrDrwParseKeyword::Type type_;
};
