#pragma once

#include <libxml/globals.h>
#include <libxml/xmlerror.h>

/// Keeps the XML library of this thread from printing while it lives. Results say what went wrong;
/// whether and where that is shown is the caller's affair. The host's own handlers come back after.
class VyrQuietXML {
 public:
  VyrQuietXML()
      : structured_(xmlStructuredError),
        structuredContext_(xmlStructuredErrorContext),
        generic_(xmlGenericError),
        genericContext_(xmlGenericErrorContext) {
    xmlSetStructuredErrorFunc(nullptr, IgnoreError);
    xmlSetGenericErrorFunc(nullptr, IgnoreText);
  }
  VyrQuietXML(const VyrQuietXML&) = delete;
  VyrQuietXML& operator=(const VyrQuietXML&) = delete;
  ~VyrQuietXML() {
    xmlSetStructuredErrorFunc(structuredContext_, structured_);
    xmlSetGenericErrorFunc(genericContext_, generic_);
  }

 private:
  static void IgnoreError(void*, xmlError*) {}
  static void IgnoreText(void*, const char*, ...) {}

  xmlStructuredErrorFunc structured_;
  void* structuredContext_;
  xmlGenericErrorFunc generic_;
  void* genericContext_;
};
