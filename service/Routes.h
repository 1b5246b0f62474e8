#pragma once

#include "service/RecordStore.h"
#include "service/Router.h"
#include "service/SurveyCatalogue.h"

// The paths of the service by topic. What is passed must outlive the router.
namespace SurveyService {

/// Configuration of an environment, and its visitors.
void addVisitorRoutes(Router &router, const SurveyCatalogue &surveys, RecordStore &records);

/// Tracked events, single and in batches, and the surveys they trigger.
void addEventRoutes(Router &router, const SurveyCatalogue &surveys, RecordStore &records);

void addAttributeRoutes(Router &router, RecordStore &records);

/// Survey history, responses and error reports, and reading everything back.
void addReportRoutes(Router &router, RecordStore &records);

} // namespace SurveyService
