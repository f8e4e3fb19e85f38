#pragma once

/// Everything of the core library: values and pure functions, no clock, no environment, no user interface.

#include "TallyfoxCore/Files/LocalUsageScanner.h"
#include "TallyfoxCore/Time/Calendar.h"
#include "TallyfoxCore/Time/Instant.h"
#include "TallyfoxCore/Time/TimeZoneFile.h"
#include "TallyfoxCore/Time/TimeZoneRule.h"
#include "TallyfoxCore/Usage/ClaudeUsageParser.h"
#include "TallyfoxCore/Usage/CodexRateLimitParser.h"
#include "TallyfoxCore/Usage/CodexUsageParser.h"
#include "TallyfoxCore/Usage/Provider.h"
#include "TallyfoxCore/Usage/QuotaSnapshot.h"
#include "TallyfoxCore/Usage/TokenSum.h"
#include "TallyfoxCore/Usage/UsageSample.h"
#include "TallyfoxCore/Usage/UsageSummary.h"
