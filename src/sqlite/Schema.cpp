#include "sqlite/Schema.h"

namespace carvelot {

// A record's line, day and time follow from those of an earlier record nearly always, so only where they do
// not something is stored: log_line and log_day. What many records share is an origin. A text
// that is that of an earlier record is that record's number (hence no type, which would make a text of it).
// Name, table and duration of a record are mostly those of its frame, as its origin says; else they stand in
// log_detail. A frame has the number of the record that it begins at, and so has its parent.
const char* const kSchemaTables = R"sql(
CREATE TABLE logs (
    id INTEGER PRIMARY KEY,
    path TEXT NOT NULL,
    host TEXT NOT NULL,
    format TEXT NOT NULL,
    size INTEGER NOT NULL,
    hash TEXT NOT NULL,
    lines INTEGER NOT NULL,
    records INTEGER NOT NULL,
    unread INTEGER NOT NULL,
    begin_day TEXT,
    begin_time INTEGER,
    length INTEGER NOT NULL,
    threshold REAL NOT NULL,
    shapes_only INTEGER NOT NULL,
    UNIQUE (host, path));
CREATE TABLE log_stream (
    log INTEGER NOT NULL REFERENCES logs,
    stream INTEGER NOT NULL,
    name TEXT NOT NULL,
    PRIMARY KEY (log, stream)) WITHOUT ROWID;
CREATE TABLE log_origin (
    log INTEGER NOT NULL REFERENCES logs,
    origin INTEGER NOT NULL,
    kind TEXT NOT NULL,
    process INTEGER NOT NULL,
    thread INTEGER NOT NULL,
    stream INTEGER NOT NULL,
    user TEXT,
    level TEXT,
    source TEXT,
    label TEXT,
    label_goes_on INTEGER NOT NULL,
    return_code INTEGER NOT NULL,
    name_of_frame INTEGER NOT NULL,
    table_of_shape INTEGER NOT NULL,
    duration_of_frame INTEGER NOT NULL,
    PRIMARY KEY (log, origin),
    FOREIGN KEY (log, stream) REFERENCES log_stream) WITHOUT ROWID;
CREATE TABLE log_record (
    log INTEGER NOT NULL REFERENCES logs,
    record INTEGER NOT NULL,
    clock INTEGER,
    origin INTEGER,
    text,
    PRIMARY KEY (log, record),
    FOREIGN KEY (log, origin) REFERENCES log_origin) WITHOUT ROWID;
CREATE TABLE log_detail (
    log INTEGER NOT NULL REFERENCES logs,
    record INTEGER NOT NULL,
    name TEXT,
    table_name TEXT,
    duration REAL,
    gap REAL,
    ube_level INTEGER,
    label TEXT,
    PRIMARY KEY (log, record),
    FOREIGN KEY (log, record) REFERENCES log_record) WITHOUT ROWID;
CREATE TABLE log_line (
    log INTEGER NOT NULL REFERENCES logs,
    record INTEGER NOT NULL,
    ahead INTEGER NOT NULL,
    PRIMARY KEY (log, record),
    FOREIGN KEY (log, record) REFERENCES log_record) WITHOUT ROWID;
CREATE TABLE log_day (
    log INTEGER NOT NULL REFERENCES logs,
    record INTEGER NOT NULL,
    day TEXT,
    midnight INTEGER,
    PRIMARY KEY (log, record),
    FOREIGN KEY (log, record) REFERENCES log_record) WITHOUT ROWID;
CREATE TABLE log_function (
    log INTEGER NOT NULL REFERENCES logs,
    function INTEGER NOT NULL,
    function_key TEXT NOT NULL,
    kind TEXT NOT NULL,
    name TEXT NOT NULL,
    calls INTEGER NOT NULL,
    unclosed INTEGER NOT NULL,
    failed INTEGER NOT NULL,
    warned INTEGER NOT NULL,
    total INTEGER NOT NULL,
    self INTEGER NOT NULL,
    shortest INTEGER NOT NULL,
    longest INTEGER NOT NULL,
    p50 INTEGER NOT NULL,
    p95 INTEGER NOT NULL,
    PRIMARY KEY (log, function)) WITHOUT ROWID;
CREATE TABLE log_shape (
    log INTEGER NOT NULL REFERENCES logs,
    shape INTEGER NOT NULL,
    shape_key TEXT NOT NULL,
    text TEXT NOT NULL,
    operation TEXT,
    table_name TEXT,
    count INTEGER NOT NULL,
    total INTEGER NOT NULL,
    longest INTEGER NOT NULL,
    p95 INTEGER NOT NULL,
    first_record INTEGER NOT NULL,
    longest_record INTEGER NOT NULL,
    top_caller INTEGER,
    PRIMARY KEY (log, shape),
    FOREIGN KEY (log, first_record) REFERENCES log_record,
    FOREIGN KEY (log, longest_record) REFERENCES log_record,
    FOREIGN KEY (log, top_caller) REFERENCES log_function) WITHOUT ROWID;
CREATE TABLE log_frame (
    log INTEGER NOT NULL REFERENCES logs,
    record INTEGER NOT NULL,
    frame INTEGER NOT NULL,
    parent INTEGER,
    function INTEGER,
    shape INTEGER,
    start_clock INTEGER,
    total INTEGER,
    self INTEGER,
    closed INTEGER,
    result INTEGER,
    PRIMARY KEY (log, record),
    FOREIGN KEY (log, record) REFERENCES log_record,
    FOREIGN KEY (log, parent) REFERENCES log_frame,
    FOREIGN KEY (log, function) REFERENCES log_function,
    FOREIGN KEY (log, shape) REFERENCES log_shape) WITHOUT ROWID;
CREATE TABLE log_finding (
    log INTEGER NOT NULL REFERENCES logs,
    finding INTEGER NOT NULL,
    rule TEXT NOT NULL,
    severity TEXT NOT NULL,
    subject TEXT NOT NULL,
    count INTEGER NOT NULL,
    cost INTEGER NOT NULL,
    text TEXT NOT NULL,
    PRIMARY KEY (log, finding)) WITHOUT ROWID;
CREATE TABLE log_finding_record (
    log INTEGER NOT NULL REFERENCES logs,
    finding INTEGER NOT NULL,
    position INTEGER NOT NULL,
    record INTEGER NOT NULL,
    PRIMARY KEY (log, finding, position),
    FOREIGN KEY (log, finding) REFERENCES log_finding,
    FOREIGN KEY (log, record) REFERENCES log_record) WITHOUT ROWID;
CREATE TABLE log_gap (
    log INTEGER NOT NULL REFERENCES logs,
    gap INTEGER NOT NULL,
    record INTEGER NOT NULL,
    PRIMARY KEY (log, gap),
    FOREIGN KEY (log, record) REFERENCES log_record) WITHOUT ROWID;
CREATE TABLE log_error (
    log INTEGER NOT NULL REFERENCES logs,
    error INTEGER NOT NULL,
    record INTEGER NOT NULL,
    type TEXT NOT NULL,
    PRIMARY KEY (log, error),
    FOREIGN KEY (log, record) REFERENCES log_record) WITHOUT ROWID;
)sql";

// What a query does not name costs nothing: hence subqueries where a join would be made for each row. Records
// are walked log by log, each with a look at its origin, whatever a query asks of these.
const char* const kSchemaViews = R"sql(
CREATE VIEW log_rows AS
SELECT r.log AS log_id, l.path AS log, l.host AS host, r.record AS record,
       r.record + (SELECT s.ahead FROM log_line s WHERE s.log = r.log AND s.record <= r.record
                   ORDER BY s.record DESC LIMIT 1) AS line,
       r.clock AS clock,
       (SELECT d.day FROM log_day d WHERE d.log = r.log AND d.record <= r.record
        ORDER BY d.record DESC LIMIT 1) AS day,
       r.clock - (SELECT d.midnight FROM log_day d WHERE d.log = r.log AND d.record <= r.record
                  ORDER BY d.record DESC LIMIT 1) AS time,
       o.kind AS kind, o.process AS process, o.thread AS thread,
       (SELECT t.name FROM log_stream t WHERE t.log = o.log AND t.stream = o.stream) AS stream,
       o.user AS user, o.level AS level, o.source AS source,
       CASE o.label_goes_on WHEN 0 THEN nullif(rtrim(o.label), '')
            WHEN 1 THEN (SELECT coalesce(o.label, '') ||
                                rtrim(substr(x.text, 1, coalesce(nullif(instr(x.text, char(9)), 0) - 1, length(x.text))))
                         FROM log_record x
                         WHERE x.log = r.log AND x.record = CASE typeof(r.text) WHEN 'integer' THEN r.text ELSE r.record END)
            ELSE (SELECT coalesce(o.label, '') || e.label FROM log_detail e WHERE e.log = r.log AND e.record = r.record)
       END AS label,
       CASE o.name_of_frame
            WHEN 1 THEN (SELECT u.name FROM log_frame f JOIN log_function u ON u.log = f.log AND u.function = f.function
                         WHERE f.log = r.log AND f.record = r.record)
            ELSE (SELECT e.name FROM log_detail e WHERE e.log = r.log AND e.record = r.record) END AS name,
       CASE o.kind WHEN 'SQL' THEN
            (SELECT s.operation FROM log_frame f JOIN log_shape s ON s.log = f.log AND s.shape = f.shape
             WHERE f.log = r.log AND f.record = r.record) END AS operation,
       CASE o.table_of_shape
            WHEN 1 THEN (SELECT s.table_name FROM log_frame f JOIN log_shape s ON s.log = f.log AND s.shape = f.shape
                         WHERE f.log = r.log AND f.record = r.record)
            ELSE (SELECT e.table_name FROM log_detail e WHERE e.log = r.log AND e.record = r.record) END AS table_name,
       CASE o.kind WHEN 'SQL' THEN
            (SELECT s.shape_key FROM log_frame f JOIN log_shape s ON s.log = f.log AND s.shape = f.shape
             WHERE f.log = r.log AND f.record = r.record) END AS shape_key,
       o.return_code AS return_code,
       CASE o.duration_of_frame
            WHEN 1 THEN (SELECT f.total / 1000000.0 FROM log_frame f WHERE f.log = r.log AND f.record = r.record)
            ELSE (SELECT e.duration FROM log_detail e WHERE e.log = r.log AND e.record = r.record) END AS duration,
       (SELECT e.gap FROM log_detail e WHERE e.log = r.log AND e.record = r.record) AS gap,
       (SELECT e.ube_level FROM log_detail e WHERE e.log = r.log AND e.record = r.record) AS ube_level,
       CASE typeof(r.text)
            WHEN 'integer' THEN (SELECT x.text FROM log_record x WHERE x.log = r.log AND x.record = r.text)
            ELSE r.text END AS text
FROM logs l
CROSS JOIN log_record r ON r.log = l.id
CROSS JOIN log_origin o ON o.log = r.log AND o.origin = r.origin;

CREATE VIEW records AS
SELECT log, host, record, line, clock, day, time, kind, process, thread, stream, user, level, source, label, name,
       operation, table_name, shape_key, return_code, duration, gap, ube_level, text
FROM log_rows;

CREATE VIEW frames AS
SELECT l.path AS log, l.host AS host, f.frame AS frame, f.record AS record,
       (SELECT p.frame FROM log_frame p WHERE p.log = f.log AND p.record = f.parent) AS parent,
       (SELECT t.name
        FROM log_record r
        JOIN log_origin o ON o.log = r.log AND o.origin = r.origin
        JOIN log_stream t ON t.log = o.log AND t.stream = o.stream
        WHERE r.log = f.log AND r.record = f.record) AS stream,
       u.kind AS kind, u.name AS name, u.function_key AS function_key,
       (SELECT s.shape_key FROM log_shape s WHERE s.log = f.log AND s.shape = f.shape) AS shape_key,
       (SELECT d.day FROM log_day d WHERE d.log = f.log AND d.record <= f.record
        ORDER BY d.record DESC LIMIT 1) AS day,
       (SELECT r.clock FROM log_record r WHERE r.log = f.log AND r.record = f.record) -
       (SELECT d.midnight FROM log_day d WHERE d.log = f.log AND d.record <= f.record
        ORDER BY d.record DESC LIMIT 1) AS time,
       f.start_clock AS start_clock, f.start_clock + f.total AS end_clock, f.total AS total, f.self AS self,
       f.closed AS closed, f.result AS result
FROM logs l
JOIN log_frame f ON f.log = l.id
JOIN log_function u ON u.log = f.log AND u.function = f.function;

CREATE VIEW functions AS
SELECT l.path AS log, l.host AS host, u.function_key AS function_key, u.kind AS kind, u.name AS name,
       l.begin_day AS day, u.calls AS calls, u.unclosed AS unclosed, u.failed AS failed, u.warned AS warned,
       u.total AS total, u.self AS self, u.shortest AS shortest, u.longest AS longest, u.p50 AS p50, u.p95 AS p95
FROM log_function u
LEFT JOIN logs l ON l.id = u.log;

CREATE VIEW shapes AS
SELECT l.path AS log, l.host AS host, s.shape_key AS shape_key, s.text AS shape, s.operation AS operation,
       s.table_name AS table_name, l.begin_day AS day, s.count AS count, s.total AS total, s.longest AS longest,
       s.p95 AS p95, s.first_record AS first_record, s.longest_record AS longest_record,
       u.function_key AS top_caller_key, u.kind AS top_caller_kind, u.name AS top_caller_name
FROM log_shape s
LEFT JOIN logs l ON l.id = s.log
LEFT JOIN log_function u ON u.log = s.log AND u.function = s.top_caller;

CREATE VIEW findings AS
SELECT l.path AS log, l.host AS host, n.finding AS finding, n.rule AS rule, n.severity AS severity,
       n.subject AS subject, n.count AS count, n.cost AS cost, a.record AS record,
       coalesce((SELECT group_concat(p.record, ' ')
                 FROM (SELECT record FROM log_finding_record q
                       WHERE q.log = n.log AND q.finding = n.finding ORDER BY q.position) p), '') AS records,
       (SELECT d.day FROM log_day d WHERE d.log = a.log AND d.record <= a.record
        ORDER BY d.record DESC LIMIT 1) AS day,
       r.clock - (SELECT d.midnight FROM log_day d WHERE d.log = a.log AND d.record <= a.record
                  ORDER BY d.record DESC LIMIT 1) AS time,
       n.text AS text
FROM log_finding n
LEFT JOIN logs l ON l.id = n.log
LEFT JOIN log_finding_record a ON a.log = n.log AND a.finding = n.finding AND a.position = 0
LEFT JOIN log_record r ON r.log = a.log AND r.record = a.record;

CREATE VIEW gaps AS
SELECT r.log AS log, r.host AS host, r.record AS record, r.line AS line, r.clock AS clock, r.day AS day,
       r.time AS time, r.process AS process, r.thread AS thread, r.stream AS stream, r.user AS user, r.gap AS gap,
       r.text AS text
FROM log_gap g
JOIN log_rows r ON r.log_id = g.log AND r.record = g.record;

CREATE VIEW errors AS
SELECT r.log AS log, r.host AS host, r.record AS record, r.line AS line, r.clock AS clock, r.day AS day,
       r.time AS time, r.process AS process, r.thread AS thread, r.stream AS stream, r.user AS user, r.kind AS kind,
       e.type AS type, r.return_code AS return_code, r.text AS text
FROM log_error e
JOIN log_rows r ON r.log_id = e.log AND r.record = e.record;

CREATE VIEW slowest_functions AS
SELECT kind, name, count(*) AS logs, sum(calls) AS calls, sum(failed) AS failed, sum(total) AS total,
       sum(self) AS self, max(longest) AS longest, function_key
FROM log_function
GROUP BY function_key, kind, name
ORDER BY sum(self) DESC, sum(total) DESC, kind, name;

CREATE VIEW repeated_statements AS
SELECT log, host, subject, count, cost, record, day, time
FROM findings
WHERE rule = 'repeated-statement'
ORDER BY cost DESC, count DESC, subject;

CREATE VIEW findings_by_severity AS
SELECT severity, rule, count(*) AS findings, count(DISTINCT log) AS logs, sum(count) AS count, sum(cost) AS cost
FROM log_finding
GROUP BY severity, rule
ORDER BY CASE severity WHEN 'error' THEN 0 WHEN 'warning' THEN 1 ELSE 2 END, sum(cost) DESC, rule;

CREATE VIEW silences AS
SELECT r.log AS log, r.host AS host, n.subject AS function, n.cost AS cost, n.count AS count, r.record AS record,
       r.line AS line, r.day AS day, r.time AS time, r.stream AS stream, r.text AS text
FROM log_finding n
JOIN log_finding_record q ON q.log = n.log AND q.finding = n.finding
JOIN log_rows r ON r.log_id = q.log AND r.record = q.record
WHERE n.rule = 'silence-in-call'
ORDER BY n.cost DESC, r.host, r.log, n.finding, q.position;

CREATE VIEW errors_by_hour AS
SELECT host, day, time / 3600000000 AS hour, type, count(*) AS errors, count(DISTINCT log) AS logs
FROM errors
GROUP BY host, day, time / 3600000000, type
ORDER BY day, hour, host, type;
)sql";

// The frames of a function have no index: it would cost a tenth of the whole, and a function is known to the
// logs that it ran in, whose frames stand together.
const char* const kSchemaIndexes = R"sql(
CREATE INDEX function_by_key ON log_function (function_key);
CREATE INDEX shape_by_key ON log_shape (shape_key);
CREATE INDEX finding_by_rule ON log_finding (rule);
)sql";

const char* const kSchemaWithoutIndexes = R"sql(
DROP INDEX function_by_key;
DROP INDEX shape_by_key;
DROP INDEX finding_by_rule;
)sql";

} // namespace carvelot
