// The timing, counting and logging around the three timed queries
// (FindExact, FindOptimal, Interpolate), written once.
#ifndef SPARLANE_QUERY_TIMED_QUERY_H_
#define SPARLANE_QUERY_TIMED_QUERY_H_

#include "query/query_clock.h"
#include "query/query_log.h"
#include "store/store.h"

namespace Sparlane {

// Started once a query's argument checks have passed.  A query that returns
// before Finish (an unknown name) is neither counted nor logged.
class QueryTimer {
 public:
  explicit QueryTimer(const Store& store) : store_(store), start_(QueryClock::Start()) {}

  // Counts the query as found or not and, when logging is on, writes its
  // line; detail() builds the text only then.
  template <typename Detail>
  void Finish(const char* operation, bool found, Detail&& detail) const {
    const double elapsed_us = QueryClock::MicrosSince(start_);
    store_.metrics().Record(elapsed_us, found);
    if (store_.query_logging()) LogQuery(operation, detail(), elapsed_us);
  }

 private:
  const Store& store_;
  const QueryStamp start_;
};

}  // namespace Sparlane

#endif  // SPARLANE_QUERY_TIMED_QUERY_H_
