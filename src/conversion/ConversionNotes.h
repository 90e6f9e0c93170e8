#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "VyrAnnStandardXMLNode.h"
#include "VyrDrwConversionNote.h"
#include "VyrDrwParseParameter.h"

// What a text standard says and the standard that is made of it does not.

/// That the standard was taken as ANSI although its datum mode says neither that nor ASME.
std::optional<VyrDrwConversionNote> NoteOnDatumMode(const VyrDrwParseParameter* parentStandard,
                                                    const VyrDrwParseParameter* datumMode);

/// Adds the general parameters of a text whose value is not what `dimension` holds, whichever step
/// has changed it. `dimension` is where the standard has them, null when it has no such node.
void AddNotesOnParameters(const std::vector<std::unique_ptr<VyrDrwParseParameter>>& parameters,
                          const VyrAnnStandardXMLNode* dimension,
                          std::vector<VyrDrwConversionNote>& notes);
