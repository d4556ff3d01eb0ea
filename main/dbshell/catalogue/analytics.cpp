// Video analytics: detectors and their areas.
#include "main/dbshell/catalogue.h"

const std::span<const Table> kAnalyticsTables = {};
