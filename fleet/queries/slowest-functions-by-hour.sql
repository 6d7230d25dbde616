-- Which functions took the most time of their own over all servers, hour by hour of the last seven days? Ten an hour.
-- A call counts for the hour in which it begins, on the clock of its server. Times are microseconds. The newest day is that on
-- which the newest log begins.
WITH (SELECT max(day) FROM carvelot.loads) AS newest
SELECT day, intDiv(time, 3600000000) AS hour, name, count() AS calls, uniqExact(host) AS hosts,
       sum(self) AS own, max(total) AS longest
FROM carvelot.frames
WHERE kind = 'function' AND day > newest - 7
GROUP BY day, hour, name
ORDER BY day, hour, own DESC, name
LIMIT 10 BY day, hour
SETTINGS enable_optimize_predicate_expression = 1
