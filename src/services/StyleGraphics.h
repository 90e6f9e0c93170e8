#pragma once

#include "VyrIDftStyle.h"
#include "VyrResult.h"
#include "VyrVisPropertiesValues.h"

/// Reads graphic values out of a style, as `VyrDftStyleToolbox::GetPropertiesValueFromStyle` says.
HRESULT ReadStyleGraphics(VyrIDftStyle* style, const char* path, int geometryType, bool useDefaults,
                          VyrVisPropertiesValues& values);
