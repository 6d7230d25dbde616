-- Does every log of the last fourteen days have all rows that it came with, and stand on one server only? No answer is a yes.
-- Ask it after a server lost power or a disk. fleet/load --again loads such a log again.
SELECT host, log, load, copies, rows_loaded, rows_there
FROM (
    WITH (SELECT max(day) FROM carvelot.loads) AS newest
    SELECT host, log, max(load) AS load, count() AS copies,
           sum(records + frames + functions + shapes + findings + gaps + errors) AS rows_loaded
    FROM carvelot.loads
    WHERE day > newest - 14
    GROUP BY host, log)
ANY LEFT JOIN (
    SELECT load, sum(number) AS rows_there
    FROM (
        SELECT load, count() AS number FROM carvelot.records GROUP BY load
        UNION ALL SELECT load, count() AS number FROM carvelot.frames GROUP BY load
        UNION ALL SELECT load, count() AS number FROM carvelot.functions GROUP BY load
        UNION ALL SELECT load, count() AS number FROM carvelot.shapes GROUP BY load
        UNION ALL SELECT load, count() AS number FROM carvelot.findings GROUP BY load
        UNION ALL SELECT load, count() AS number FROM carvelot.gaps GROUP BY load
        UNION ALL SELECT load, count() AS number FROM carvelot.errors GROUP BY load)
    GROUP BY load) USING load
WHERE copies > 1 OR rows_loaded != rows_there
ORDER BY host, log
