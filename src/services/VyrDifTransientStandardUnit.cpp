#include "VyrDifTransientStandardUnit.h"

VyrTrace transientStandardTrace("DifCptWithStd", "VyrDifTransientStandard traces");
