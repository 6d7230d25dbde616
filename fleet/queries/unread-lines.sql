-- Which servers write lines that Carvelot does not read, and how many of a thousand?
-- By reason: a dialect may help (docs/dialects.md), or the log is no log. The share is that among all lines that were read or not.
SELECT host, reason, logs, unread, records, intDiv(unread * 1000, unread + records) AS of_a_thousand
FROM (
    SELECT host, subject AS reason, uniqExact(log) AS logs, sum(count) AS unread
    FROM carvelot.findings
    WHERE rule = 'unread-lines'
    GROUP BY host, reason)
ANY LEFT JOIN (
    SELECT host, sum(records) AS records
    FROM carvelot.loads
    GROUP BY host) USING host
ORDER BY of_a_thousand DESC, unread DESC, host, reason
SETTINGS enable_optimize_predicate_expression = 1
