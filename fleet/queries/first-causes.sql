-- Which functions fail, on how many servers, and what went wrong first in each one's most expensive case?
-- The text is that of the record that was the first trouble within the failed call; loads with --shapes-only have none.
SELECT function, sum(count) AS failures, uniqExact(host) AS hosts, uniqExact(load) AS logs, sum(cost) AS lost,
       argMax(kind, (cost, load)) AS cause, argMax(text, (cost, load)) AS said
FROM (
    SELECT subject AS function, host, load, count, cost, assumeNotNull(record) AS record
    FROM carvelot.findings
    WHERE rule = 'first-cause')
ANY LEFT JOIN (
    SELECT load, record, kind, text
    FROM carvelot.records
    WHERE (load, record) GLOBAL IN (
        SELECT load, assumeNotNull(record)
        FROM carvelot.findings
        WHERE rule = 'first-cause')) USING load, record
GROUP BY function
ORDER BY lost DESC, failures DESC, function
LIMIT 50
SETTINGS enable_optimize_predicate_expression = 1
