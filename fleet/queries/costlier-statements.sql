-- Which statements cost more in the last seven days than in the seven before? The most time more first.
-- A log counts for the day on which it begins. Whether they run more often or each takes longer, the counts tell.
WITH (SELECT max(day) FROM carvelot.loads) AS newest
SELECT shape_key, any(shape) AS statement,
       sumIf(count, day <= newest - 7) AS count_before, sumIf(count, day > newest - 7) AS count_now,
       sumIf(total, day <= newest - 7) AS total_before, sumIf(total, day > newest - 7) AS total_now,
       total_now - total_before AS more
FROM carvelot.shapes
WHERE day > newest - 14
GROUP BY shape_key
HAVING more > 0
ORDER BY more DESC, shape_key
LIMIT 20
SETTINGS enable_optimize_predicate_expression = 1
