// Quantor: units of measure loaded at run time from description files.
// This header gives a host every public class and free function.
#pragma once

#include "quantor/export.h"
#include "quantor/types.h"
#include "quantor/sinks.h"
#include "quantor/numeric.h"
#include "quantor/utf8.h"
#include "quantor/settings.h"
#include "quantor/setting_names.h"
#include "quantor/model.h"
#include "quantor/convinfo.h"
#include "quantor/unit.h"
#include "quantor/category.h"
#include "quantor/admin.h"
#include "quantor/admin_dscr.h"
#include "quantor/diagnostics.h"
#include "quantor/translation.h"
#include "quantor/functions.h"
#include "quantor/names.h"
