#pragma once

#include "service/RecordStore.h"
#include "service/Router.h"
#include "service/SurveyCatalogue.h"

// The routes of the service, by topic. The arguments must outlive the router.
namespace SurveyService {

/// Adds the configuration of an environment, and its visitors.
void addVisitorRoutes(Router &router, const SurveyCatalogue &surveys, RecordStore &records);

/// Adds tracked events, single and in batches, and the surveys that they trigger.
void addEventRoutes(Router &router, const SurveyCatalogue &surveys, RecordStore &records);

/// Adds setting and removing attributes, one by one and in bulk.
void addAttributeRoutes(Router &router, RecordStore &records);

/// Adds survey history, responses, error reports and GET /records.
void addReportRoutes(Router &router, RecordStore &records);

} // namespace SurveyService
