-- What did a release change: which functions take longer or shorter a call than in the week before?
-- The weeks begin on Mondays: that of the newest log and the one before. For others put toDate('2026-01-12') in place of the first
-- line's query. A log counts for the day on which it begins. Times of their own, microseconds; 0 where a week has no call.
WITH (SELECT toMonday(max(day)) FROM carvelot.loads) AS release
SELECT kind, name,
       sumIf(calls, day < release) AS calls_before, sumIf(calls, day >= release) AS calls_after,
       sumIf(self, day < release) AS own_before, sumIf(self, day >= release) AS own_after,
       intDiv(own_before, greatest(calls_before, 1)) AS a_call_before,
       intDiv(own_after, greatest(calls_after, 1)) AS a_call_after,
       sumIf(failed, day < release) AS failed_before, sumIf(failed, day >= release) AS failed_after
FROM carvelot.functions
WHERE day >= release - 7 AND day < release + 7
GROUP BY kind, name
ORDER BY abs(own_after - own_before) DESC, kind, name
LIMIT 50
SETTINGS enable_optimize_predicate_expression = 1
