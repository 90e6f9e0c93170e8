#pragma once

#include "VyrDiagnostics.h"
#include "VyrTrace.h"
#include "VyrXMLDOM.h"

/// A document builder of the host with the options that standard files need: namespaces, and no
/// validation where the builder can be told. `E_FAIL` when it knows no namespaces, `E_UNEXPECTED`
/// when there is no builder or it refuses an option. Reports as `unit` and traces to `trace`.
HRESULT MakeStandardDocumentBuilder(const VyrSourceUnit& unit, VyrTrace& trace,
                                    VyrIXMLDOMDocumentBuilder_var& builder);
