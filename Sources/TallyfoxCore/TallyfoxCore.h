#pragma once

/// Everything of the core library: values and pure functions, no clock, no environment, no user interface.

#include "TallyfoxCore/Calendar.h"
#include "TallyfoxCore/ClaudeUsageParser.h"
#include "TallyfoxCore/CodexRateLimitParser.h"
#include "TallyfoxCore/CodexUsageParser.h"
#include "TallyfoxCore/DailyUsage.h"
#include "TallyfoxCore/DayTable.h"
#include "TallyfoxCore/Instant.h"
#include "TallyfoxCore/LocalUsageScanner.h"
#include "TallyfoxCore/Provider.h"
#include "TallyfoxCore/QuotaSnapshot.h"
#include "TallyfoxCore/TimeZoneFile.h"
#include "TallyfoxCore/TimeZoneRule.h"
#include "TallyfoxCore/TokenSum.h"
#include "TallyfoxCore/UsageSample.h"
#include "TallyfoxCore/UsageSummary.h"
#include "TallyfoxCore/ZoneOffset.h"
