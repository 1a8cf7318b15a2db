"""The performance counters and the query log."""

import sparlane


def test_counters_follow_the_timed_queries(db):
    db.reset_performance_metrics()
    db.find_exact("Mild steel", 6.0, "AIR-45A")
    db.find_exact("Mild steel", 7.0, "AIR-45A")
    db.interpolate("Mild steel", 8.0, "AIR-45A")
    db.find_optimal("Mild steel", 6.0, 0.01)
    m = db.performance_metrics()
    assert (m.total_queries, m.queries_found, m.queries_not_found) == (4, 3, 1)
    assert m.min_query_time_us <= m.avg_query_time_us <= m.max_query_time_us


def test_reset_puts_the_counters_back(db):
    db.find_exact("Mild steel", 6.0, "AIR-45A")
    db.reset_performance_metrics()
    assert db.performance_metrics() == sparlane.PerformanceMetrics(min_query_time_us=1.0e9)


def test_query_log_writes_one_line_per_query_when_on(db, capfd):
    db.find_exact("Mild steel", 6.0, "AIR-45A")
    assert capfd.readouterr().err == ""
    db.set_query_logging(True)
    db.find_exact("Mild steel", 6.0, "AIR-45A")
    err = capfd.readouterr().err
    assert "FindExact" in err and err.count("\n") == 1 and err.endswith("\n")
    db.set_query_logging(False)
    db.find_exact("Mild steel", 6.0, "AIR-45A")
    assert capfd.readouterr().err == ""
