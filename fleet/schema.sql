-- The logs of a fleet in ClickHouse. Every server of the cluster gets all of this, and may get it again:
--
--     clickhouse-client --host SERVER -n <fleet/schema.sql
--
-- "carvelot" is the database, and the name of the cluster in the servers' remote_servers. docs/fleet.md tells how to set up
-- one, docs/tables.md what the columns mean. For each table of carvelot-report there are
--
--     frames           what queries name: the rows of all servers, of whole loads only
--     frames_shown     the same of this server
--     frames_stored    all its rows, of unfinished and replaced loads too
--     frames_in        what fleet/load writes to: the rows as carvelot-report prints them; keeps nothing
--     frames_fill      makes the rows that are stored from those
--
-- Why so:
-- - Nobody writes through the Distributed tables. They would keep rows for a server that is down, and whoever repeats the load
--   would double them; fleet/load writes a log to one server and knows what came of it.
-- - The Distributed tables stand over views. So each server groups its own rows, and sends a few, also where a query names no load.
-- - Rows come as NDJSON: of CSV, this engine takes blanks and tabs off the ends of a text. Where there is nothing to tell, what
--   is stored is an empty text, or a 0 where that says nothing else (a line, a duration, a time on no day); what may well be 0
--   is Nullable (parent, result).
-- - A log's rows come with the load, the machine and the path in the one column that carvelot-report fills as it is told, --host,
--   with tabs between: no program between it and the client has to take rows apart. (As origin, for the view makes another host of it.)
-- - A week is a partition. What is too old goes by ALTER TABLE ... DROP PARTITION, which costs nothing; a month would keep too
--   much, and days, with a part for each and every load, too many files. Rows without a day have a partition of their own.
-- - A text that the rows of a log share (machine, log, stream) is a String in each: behind each other they take next to no
--   room. LowCardinality would make grouping quicker, but is an experiment in 18.16, which is what Debian 12 has.
-- - That version has no codecs of columns either. What a server compresses with is its setting, see docs/fleet.md.
CREATE DATABASE IF NOT EXISTS carvelot;

-- What was loaded. A load is only ever told more of: a row that it began, one that it is done, which makes its rows count, one that
-- it is dropped, which nothing undoes, and one that its rows were given to be deleted. The key finds those of a log. It is never
-- large (some rows a log), so it has no partitions: what was loaded stays known when its weeks are dropped, and is not loaded
-- again.
CREATE TABLE IF NOT EXISTS carvelot.loads_stored (
    host String, log String, load UInt64,
    state Enum8('begun' = 1, 'done' = 2, 'dropped' = 3, 'swept' = 4),
    at DateTime DEFAULT now(),
    size UInt64, checksum String, options String, day Date,
    records UInt64, frames UInt64, functions UInt64, shapes UInt64, findings UInt64, gaps UInt64, errors UInt64
) ENGINE = MergeTree ORDER BY (host, log, load, state);

-- The newest whole load of each log.
CREATE VIEW IF NOT EXISTS carvelot.loads_shown AS
SELECT host, log, load, at, size, checksum, options, day, records, frames, functions, shapes, findings, gaps, errors
FROM carvelot.loads_stored
WHERE state = 'done' AND load IN (
    SELECT max(load)
    FROM (
        SELECT host, log, load
        FROM carvelot.loads_stored
        GROUP BY host, log, load
        HAVING max(toInt8(state)) = 2)
    GROUP BY host, log);

CREATE TABLE IF NOT EXISTS carvelot.loads (
    host String, log String, load UInt64, at DateTime, size UInt64, checksum String, options String, day Date,
    records UInt64, frames UInt64, functions UInt64, shapes UInt64, findings UInt64, gaps UInt64, errors UInt64
) ENGINE = Distributed(carvelot, carvelot, loads_shown);

-- Every call of a function, event, statement and object. The questions of a fleet name a kind, a function and some days:
-- so its rows stand together, and a day of a function is read without the others. Names and keys of neighbours are the same,
-- which is how they take next to no room; the load and the frame's number make the order certain.
CREATE TABLE IF NOT EXISTS carvelot.frames_stored (
    load UInt64, host String, log String, frame UInt32, record UInt32, parent Nullable(UInt32), stream String,
    kind String, name String, function_key String, shape_key String, day Date, time UInt64, start_clock Int64,
    end_clock Int64, total Int64, self Int64, closed UInt8, result Nullable(Int32)
) ENGINE = MergeTree PARTITION BY toMonday(day) ORDER BY (kind, name, day, time, load, frame);

CREATE TABLE IF NOT EXISTS carvelot.frames_in (
    log String, host String, frame UInt32, record UInt32, parent Nullable(UInt32), stream String, kind String,
    name String, function_key String, shape_key Nullable(String), day Nullable(Date), time Nullable(UInt64),
    start_clock Int64, end_clock Int64, total Int64, self Int64, closed UInt8, result Nullable(Int32),
    origin String MATERIALIZED host
) ENGINE = Null;

CREATE MATERIALIZED VIEW IF NOT EXISTS carvelot.frames_fill TO carvelot.frames_stored AS
SELECT
    toUInt64(splitByChar('\t', origin)[1]) AS load, splitByChar('\t', origin)[3] AS log,
    splitByChar('\t', origin)[2] AS host, frame, record, parent, stream, kind, name, function_key,
    ifNull(shape_key, '') AS shape_key, ifNull(day, toDate(0)) AS day, ifNull(time, 0) AS time, start_clock, end_clock,
    total, self, closed, result
FROM carvelot.frames_in;

CREATE VIEW IF NOT EXISTS carvelot.frames_shown AS
SELECT * FROM carvelot.frames_stored WHERE load IN (SELECT load FROM carvelot.loads_shown);

CREATE TABLE IF NOT EXISTS carvelot.frames (
    load UInt64, host String, log String, frame UInt32, record UInt32, parent Nullable(UInt32), stream String,
    kind String, name String, function_key String, shape_key String, day Date, time UInt64, start_clock Int64,
    end_clock Int64, total Int64, self Int64, closed UInt8, result Nullable(Int32)
) ENGINE = Distributed(carvelot, carvelot, frames_shown);

-- The frames of a log by kind and name. Two weeks of a function are compared: the order is that of the frames.
CREATE TABLE IF NOT EXISTS carvelot.functions_stored (
    load UInt64, host String, log String, function_key String, kind String, name String, day Date, calls UInt64,
    unclosed UInt64, failed UInt64, warned UInt64, total Int64, self Int64, shortest Int64, longest Int64, p50 Int64,
    p95 Int64
) ENGINE = MergeTree PARTITION BY toMonday(day) ORDER BY (kind, name, day, host, load);

CREATE TABLE IF NOT EXISTS carvelot.functions_in (
    log String, host String, function_key String, kind String, name String, day Nullable(Date), calls UInt64,
    unclosed UInt64, failed UInt64, warned UInt64, total Int64, self Int64, shortest Int64, longest Int64, p50 Int64,
    p95 Int64, origin String MATERIALIZED host
) ENGINE = Null;

CREATE MATERIALIZED VIEW IF NOT EXISTS carvelot.functions_fill TO carvelot.functions_stored AS
SELECT
    toUInt64(splitByChar('\t', origin)[1]) AS load, splitByChar('\t', origin)[3] AS log,
    splitByChar('\t', origin)[2] AS host, function_key, kind, name, ifNull(day, toDate(0)) AS day, calls, unclosed,
    failed, warned, total, self, shortest, longest, p50, p95
FROM carvelot.functions_in;

CREATE VIEW IF NOT EXISTS carvelot.functions_shown AS
SELECT * FROM carvelot.functions_stored WHERE load IN (SELECT load FROM carvelot.loads_shown);

CREATE TABLE IF NOT EXISTS carvelot.functions (
    load UInt64, host String, log String, function_key String, kind String, name String, day Date, calls UInt64,
    unclosed UInt64, failed UInt64, warned UInt64, total Int64, self Int64, shortest Int64, longest Int64, p50 Int64,
    p95 Int64
) ENGINE = Distributed(carvelot, carvelot, functions_shown);

-- The statements of a log that are alike. A shape is found by its key, and its long text stands beside itself, day by day.
CREATE TABLE IF NOT EXISTS carvelot.shapes_stored (
    load UInt64, host String, log String, shape_key String, shape String, operation String, table_name String, day Date,
    count UInt64, total Int64, longest Int64, p95 Int64, first_record UInt32, longest_record UInt32,
    top_caller_key String, top_caller_kind String, top_caller_name String
) ENGINE = MergeTree PARTITION BY toMonday(day) ORDER BY (shape_key, day, host, load);

CREATE TABLE IF NOT EXISTS carvelot.shapes_in (
    log String, host String, shape_key Nullable(String), shape String, operation Nullable(String),
    table_name Nullable(String), day Nullable(Date), count UInt64, total Int64, longest Int64, p95 Int64,
    first_record UInt32, longest_record UInt32, top_caller_key Nullable(String), top_caller_kind Nullable(String),
    top_caller_name Nullable(String), origin String MATERIALIZED host
) ENGINE = Null;

CREATE MATERIALIZED VIEW IF NOT EXISTS carvelot.shapes_fill TO carvelot.shapes_stored AS
SELECT
    toUInt64(splitByChar('\t', origin)[1]) AS load, splitByChar('\t', origin)[3] AS log,
    splitByChar('\t', origin)[2] AS host, ifNull(shape_key, '') AS shape_key, shape, ifNull(operation, '') AS operation,
    ifNull(table_name, '') AS table_name, ifNull(day, toDate(0)) AS day, count, total, longest, p95, first_record,
    longest_record, ifNull(top_caller_key, '') AS top_caller_key, ifNull(top_caller_kind, '') AS top_caller_kind,
    ifNull(top_caller_name, '') AS top_caller_name
FROM carvelot.shapes_in;

CREATE VIEW IF NOT EXISTS carvelot.shapes_shown AS
SELECT * FROM carvelot.shapes_stored WHERE load IN (SELECT load FROM carvelot.loads_shown);

CREATE TABLE IF NOT EXISTS carvelot.shapes (
    load UInt64, host String, log String, shape_key String, shape String, operation String, table_name String, day Date,
    count UInt64, total Int64, longest Int64, p95 Int64, first_record UInt32, longest_record UInt32,
    top_caller_key String, top_caller_kind String, top_caller_name String
) ENGINE = Distributed(carvelot, carvelot, shapes_shown);

-- What asks for a look. A question names a rule (first-cause, unread-lines) and groups by what it is about. A finding
-- without a record has no day: its partition is that of no day, so day can't lead here.
CREATE TABLE IF NOT EXISTS carvelot.findings_stored (
    load UInt64, host String, log String, finding UInt32, rule String, severity String, subject String, count UInt64,
    cost Int64, record Nullable(UInt32), records String, day Date, time UInt64, text String
) ENGINE = MergeTree PARTITION BY toMonday(day) ORDER BY (rule, subject, host, load, finding);

CREATE TABLE IF NOT EXISTS carvelot.findings_in (
    log String, host String, finding UInt32, rule String, severity String, subject String, count UInt64, cost Int64,
    record Nullable(UInt32), records String, day Nullable(Date), time Nullable(UInt64), text String,
    origin String MATERIALIZED host
) ENGINE = Null;

CREATE MATERIALIZED VIEW IF NOT EXISTS carvelot.findings_fill TO carvelot.findings_stored AS
SELECT
    toUInt64(splitByChar('\t', origin)[1]) AS load, splitByChar('\t', origin)[3] AS log,
    splitByChar('\t', origin)[2] AS host, finding, rule, severity, subject, count, cost, record, records,
    ifNull(day, toDate(0)) AS day, ifNull(time, 0) AS time, text
FROM carvelot.findings_in;

CREATE VIEW IF NOT EXISTS carvelot.findings_shown AS
SELECT * FROM carvelot.findings_stored WHERE load IN (SELECT load FROM carvelot.loads_shown);

CREATE TABLE IF NOT EXISTS carvelot.findings (
    load UInt64, host String, log String, finding UInt32, rule String, severity String, subject String, count UInt64,
    cost Int64, record Nullable(UInt32), records String, day Date, time UInt64, text String
) ENGINE = Distributed(carvelot, carvelot, findings_shown);

-- The silences, of a host in the order of its clock: what was silent at the same time?
CREATE TABLE IF NOT EXISTS carvelot.gaps_stored (
    load UInt64, host String, log String, record UInt32, line UInt32, clock Int64, day Date, time UInt64, process UInt32,
    thread UInt32, stream String, user String, gap Float32, text String
) ENGINE = MergeTree PARTITION BY toMonday(day) ORDER BY (host, day, time, load, record);

CREATE TABLE IF NOT EXISTS carvelot.gaps_in (
    log String, host String, record UInt32, line Nullable(UInt32), clock Int64, day Nullable(Date),
    time Nullable(UInt64), process UInt32, thread UInt32, stream String, user Nullable(String), gap Nullable(Float32),
    text Nullable(String), origin String MATERIALIZED host
) ENGINE = Null;

CREATE MATERIALIZED VIEW IF NOT EXISTS carvelot.gaps_fill TO carvelot.gaps_stored AS
SELECT
    toUInt64(splitByChar('\t', origin)[1]) AS load, splitByChar('\t', origin)[3] AS log,
    splitByChar('\t', origin)[2] AS host, record, ifNull(line, 0) AS line, clock, ifNull(day, toDate(0)) AS day,
    ifNull(time, 0) AS time, process, thread, stream, ifNull(user, '') AS user, ifNull(gap, 0) AS gap,
    ifNull(text, '') AS text
FROM carvelot.gaps_in;

CREATE VIEW IF NOT EXISTS carvelot.gaps_shown AS
SELECT * FROM carvelot.gaps_stored WHERE load IN (SELECT load FROM carvelot.loads_shown);

CREATE TABLE IF NOT EXISTS carvelot.gaps (
    load UInt64, host String, log String, record UInt32, line UInt32, clock Int64, day Date, time UInt64, process UInt32,
    thread UInt32, stream String, user String, gap Float32, text String
) ENGINE = Distributed(carvelot, carvelot, gaps_shown);

-- What failed or warned, likewise: what happened on the host around that time?
CREATE TABLE IF NOT EXISTS carvelot.errors_stored (
    load UInt64, host String, log String, record UInt32, line UInt32, clock Int64, day Date, time UInt64, process UInt32,
    thread UInt32, stream String, user String, kind String, type String, return_code Int32, text String
) ENGINE = MergeTree PARTITION BY toMonday(day) ORDER BY (host, day, time, load, record);

CREATE TABLE IF NOT EXISTS carvelot.errors_in (
    log String, host String, record UInt32, line Nullable(UInt32), clock Int64, day Nullable(Date),
    time Nullable(UInt64), process UInt32, thread UInt32, stream String, user Nullable(String), kind String, type String,
    return_code Int32, text Nullable(String), origin String MATERIALIZED host
) ENGINE = Null;

CREATE MATERIALIZED VIEW IF NOT EXISTS carvelot.errors_fill TO carvelot.errors_stored AS
SELECT
    toUInt64(splitByChar('\t', origin)[1]) AS load, splitByChar('\t', origin)[3] AS log,
    splitByChar('\t', origin)[2] AS host, record, ifNull(line, 0) AS line, clock, ifNull(day, toDate(0)) AS day,
    ifNull(time, 0) AS time, process, thread, stream, ifNull(user, '') AS user, kind, type, return_code,
    ifNull(text, '') AS text
FROM carvelot.errors_in;

CREATE VIEW IF NOT EXISTS carvelot.errors_shown AS
SELECT * FROM carvelot.errors_stored WHERE load IN (SELECT load FROM carvelot.loads_shown);

CREATE TABLE IF NOT EXISTS carvelot.errors (
    load UInt64, host String, log String, record UInt32, line UInt32, clock Int64, day Date, time UInt64, process UInt32,
    thread UInt32, stream String, user String, kind String, type String, return_code Int32, text String
) ENGINE = Distributed(carvelot, carvelot, errors_shown);

-- Every record, nine tenths of all that is stored. It is asked for the surroundings of one that another table names: a log
-- (a load of it) and some numbers of records.
CREATE TABLE IF NOT EXISTS carvelot.records_stored (
    load UInt64, host String, log String, record UInt32, line UInt32, clock Int64, day Date, time UInt64, kind String,
    process UInt32, thread UInt32, stream String, user String, level String, source String, label String, name String,
    operation String, table_name String, shape_key String, return_code Int32, duration Float32, gap Float32,
    ube_level Nullable(Int32), text String
) ENGINE = MergeTree PARTITION BY toMonday(day) ORDER BY (load, record);

CREATE TABLE IF NOT EXISTS carvelot.records_in (
    log String, host String, record UInt32, line Nullable(UInt32), clock Int64, day Nullable(Date),
    time Nullable(UInt64), kind String, process UInt32, thread UInt32, stream String, user Nullable(String),
    level Nullable(String), source Nullable(String), label Nullable(String), name Nullable(String),
    operation Nullable(String), table_name Nullable(String), shape_key Nullable(String), return_code Int32,
    duration Nullable(Float32), gap Nullable(Float32), ube_level Nullable(Int32), text Nullable(String),
    origin String MATERIALIZED host
) ENGINE = Null;

CREATE MATERIALIZED VIEW IF NOT EXISTS carvelot.records_fill TO carvelot.records_stored AS
SELECT
    toUInt64(splitByChar('\t', origin)[1]) AS load, splitByChar('\t', origin)[3] AS log,
    splitByChar('\t', origin)[2] AS host, record, ifNull(line, 0) AS line, clock, ifNull(day, toDate(0)) AS day,
    ifNull(time, 0) AS time, kind, process, thread, stream, ifNull(user, '') AS user, ifNull(level, '') AS level,
    ifNull(source, '') AS source, ifNull(label, '') AS label, ifNull(name, '') AS name,
    ifNull(operation, '') AS operation, ifNull(table_name, '') AS table_name, ifNull(shape_key, '') AS shape_key,
    return_code, ifNull(duration, 0) AS duration, ifNull(gap, 0) AS gap, ube_level, ifNull(text, '') AS text
FROM carvelot.records_in;

CREATE VIEW IF NOT EXISTS carvelot.records_shown AS
SELECT * FROM carvelot.records_stored WHERE load IN (SELECT load FROM carvelot.loads_shown);

CREATE TABLE IF NOT EXISTS carvelot.records (
    load UInt64, host String, log String, record UInt32, line UInt32, clock Int64, day Date, time UInt64, kind String,
    process UInt32, thread UInt32, stream String, user String, level String, source String, label String, name String,
    operation String, table_name String, shape_key String, return_code Int32, duration Float32, gap Float32,
    ube_level Nullable(Int32), text String
) ENGINE = Distributed(carvelot, carvelot, records_shown);

