#!/usr/bin/env python3
"""Writes the sample logs of this folder. Everything in them is invented; the shapes are those of real logs.

Usage: make_samples.py [FOLDER]      (this folder without an argument)

The same files come out every time. Each log tells one story:

  order-entry.log    two minutes at the order desk: three processes, a sales order that fails and is repaired
  order-slow.log     a sales order whose end takes seven seconds: a site's own function reads 400 items one by one
  order-well.log     the same order a day later, with one statement in their place: to compare with
  order-fails.log    a sales order that runs into another job's lock: an error deep below, codes 2 all the way up, a
                     rollback, a work file that stays behind, and a cancel that never comes back
  cache-trace.log    jdeCache traces: several caches, cursors left open, failed fetches, a cache terminated twice
  ube-batch.log      a nightly sales update whose batch log holds "--UBE--" lines
  worked-example.log fourteen lines, whose times docs/explore.md reckons by hand
  night-batch.log    a sales update over midnight, which crawls once the backup begins
  jas-web.log        the web tier: four users, prepared statements, a lost enterprise server
  jas-slow.log       a grid of the web tier that asks for each of its 120 rows, and a chart that asks without end
  old-style.log      an older server: "**" stamps, whole seconds, CR LF
  windows-1252.log   a German workstation: CR LF and Windows-1252 names
  utf-8.log          a warehouse with Polish, Greek and Japanese names, and emoji in a text line
  jas-languages.log  a year of nineteen web servers, each in the language of its country: for the dialect "months"
  jas-german.log     a German web server, CR LF and Windows-1252: without the dialect no line becomes a record
  french-order.log   the debug log of a French workstation, Windows-1252
  jas-numbered.log   a web server that puts a number ahead of each source: for the dialect "numbered"
"""

import heapq
import os
import random
import sys

MS = 1000
SECOND = 1000000
DAY = 24 * 3600 * SECOND


def clock(micros, separator=".", digits=6):
    seconds, fraction = divmod(micros, SECOND)
    text = "%02d:%02d:%02d" % (seconds // 3600 % 24, seconds // 60 % 60, seconds % 60)
    if digits == 6:
        return "%s%s%06d" % (text, separator, fraction)
    if digits == 3:
        return "%s%s%03d" % (text, separator, fraction // 1000)
    return text


def at(hour, minute, second=0, micros=0):
    return ((hour * 60 + minute) * 60 + second) * SECOND + micros


class Wait:
    """A silence of the thread, in microseconds."""

    def __init__(self, micros):
        self.micros = micros


class Raw:
    """A line that bears no stamp."""

    def __init__(self, text):
        self.text = text


class Labelled:
    """A line under another label than the thread's own."""

    def __init__(self, label, text):
        self.label = label
        self.text = text


class Worker:
    """One thread: its number, its label and what it does, a generator of texts and waits."""

    def __init__(self, process, thread, label, start, story):
        self.process = process
        self.thread = thread
        self.label = label
        self.time = start
        self.story = story
        self.ahead = None


def merge(workers, seed, stamp, pace=(40, 1800), in_blocks=False):
    """The lines of all workers in order of time. A line without a stamp follows its worker's last line at once.

    With in_blocks a worker keeps the floor until it waits, and nobody's clock is behind the last line's.
    """
    rng = random.Random(seed)
    queue = [(w.time, i, w) for i, w in enumerate(workers)]
    heapq.heapify(queue)
    out = []
    now = 0
    while queue:
        _, order, worker = heapq.heappop(queue)
        if in_blocks:
            worker.time = max(worker.time, now)
        step = worker.ahead if worker.ahead is not None else next(worker.story, None)
        worker.ahead = None
        spoken = False
        while step is not None and not isinstance(step, Wait):
            if isinstance(step, Raw):
                out.append(step.text)
            elif spoken and not in_blocks:
                break
            else:
                out.append(stamp(worker, step))
                now = worker.time
                worker.time += rng.randint(*pace)
                spoken = True
            step = next(worker.story, None)
        if isinstance(step, Wait):
            worker.time += step.micros
        elif step is None:
            continue
        else:
            worker.ahead = step
        heapq.heappush(queue, (worker.time, order, worker))
    return out


def dash_stamp(*days):
    """The newer stamp: microseconds, "-", a label, a tab. Behind midnight comes the next of the days."""
    def stamp(worker, step):
        label, text = (step.label, step.text) if isinstance(step, Labelled) else (worker.label, step)
        if text.startswith("[CARVELOT MESSAGE]"):
            label = "[CARVELOT MESSAGE] - "
        return "%s %s - %d/%d %s\t%s" % (days[worker.time // DAY], clock(worker.time), worker.process, worker.thread, label, text)
    return stamp


def padded_stamp(day):
    """The newer stamp with the label padded to 38 characters and no tab."""
    def stamp(worker, step):
        label, text = (step.label, step.text) if isinstance(step, Labelled) else (worker.label, step)
        return "%s %s - %d/%d %-38s%s" % (day, clock(worker.time), worker.process, worker.thread, label, text)
    return stamp


def star_stamp(day):
    """The older stamp: whole seconds, "**", no label, a tab ahead of the text."""
    def stamp(worker, step):
        return "%s %s ** %d/%d\t%s" % (day, clock(worker.time, digits=0), worker.process, worker.thread, step)
    return stamp


# ------------------------------------------------------------------------------------ pieces of a log

def param_in(number, name, value):
    return " IN->[%3d] %-32s [%s] " % (number, name, value)


def param_out(number, name, value):
    return "OUT->[%3d] %-32s [%s] " % (number, name, value)


def number(value):
    return "%s" % value


def text_value(value, width):
    return value.ljust(width)


class Job:
    """The calls of one thread: keeps the level and the callers."""

    def __init__(self, user, application, version, schema="PRODDTA.", driver="ORACLE", seed=1):
        self.user = user
        self.application = application
        self.version = version
        self.schema = schema
        self.driver = driver
        self.callers = []
        self.rng = random.Random("%s %s %s" % (user, application, seed))
        self.request = 0x06C7FE88 + self.rng.randrange(4096) * 8

    def call(self, name, ins=(), body=(), outs=(), code=0, work=0, user=True):
        """A business function call with everything inside it."""
        caller = self.callers[-1] if self.callers else "Level 1"
        level = len(self.callers) + 1
        who = " for %s" % self.user if user else ""
        yield "Calling Business function %s from %s%s. Application Name [%s], Version [%s] (BSFNLevel = %d)" % (
            name, caller, who, self.application, self.version, level)
        self.callers.append(name)
        for i, (key, value) in enumerate(ins):
            yield param_in(i + 1, key, value)
        if work:
            yield Wait(work)
        yield from body
        for i, (key, value) in enumerate(outs):
            yield param_out(i + 1, key, value)
        self.callers.pop()
        yield "Return value is %d for %s. (BSFNLevel = %d)" % (code, name, level)

    def table(self, name):
        return self.schema + name

    def statement(self, sql, table, took=4 * MS, found=True, error=None):
        """Opens a table, runs one statement and closes the table."""
        self.request += 8
        handle = "%08X" % self.request
        yield "Entering JDB_OpenTable(Table = %s)" % table
        yield "Exiting JDB_OpenTable(Table = %s) (UserHandle 2BB4BE18) (hRequest %s) with Success" % (table, handle)
        yield " " + sql + "  "
        yield "Entering DBPerformRequest"
        yield "%s DBPerformRequest conn=03F46130 requ=%s host (prod) reuse" % (self.driver, handle)
        yield Wait(took)
        if error:
            for line in error:
                yield line
            yield "Exiting DBPerformRequest"
            yield "JDB9900401 - Failed to execute db request"
            return
        yield "Exiting DBPerformRequest"
        if sql.startswith("SELECT"):
            yield "%s DBFetch conn=03F46130 requ=%s maxrows=%d" % (self.driver, handle, 1 if found else 100)
            yield "Fetched the record" if found else "No More Data found"
        yield "Entering JDB_CloseTable(Table = %s)" % table
        yield "Exiting JDB_CloseTable with Success"

    def select(self, table, where, columns="*", **more):
        return self.statement("SELECT  %s FROM %s  WHERE  ( %s )" % (columns, self.table(table), where), table, **more)

    def insert(self, table, columns, values, **more):
        return self.statement("INSERT INTO %s (%s) VALUES (%s)" % (
            self.table(table), ", ".join(columns), ", ".join(values)), table, **more)

    def update(self, table, change, where, **more):
        return self.statement("UPDATE %s SET %s  WHERE  ( %s )" % (self.table(table), change, where), table, **more)

    def delete(self, table, where, **more):
        return self.statement("DELETE FROM %s  WHERE  ( %s )" % (self.table(table), where), table, **more)


class CacheTrace:
    """The trace lines of one jdeCache cache."""

    def __init__(self, name, handle):
        self.name = name
        self.handle = handle
        self.records = 0

    def confirm(self, what):
        return "  hCache:[%s] Nm:[9%s] Recs:%d Curs:0 Hnds:1 Cchs:141 %s" % (self.handle, self.name, self.records, what)

    def create(self):
        self.records = 0
        yield "Entering jdeCacheInit - Name:[%s]" % self.name
        yield "  Created new cache - hCache:[%s]" % self.handle
        yield self.confirm("INIT new")

    def attach(self, references):
        yield "Entering jdeCacheInit - Name:[%s]" % self.name
        yield "    Found existing cache, total references:[%d]" % references
        yield self.confirm("INIT existing")

    def add(self, count=1):
        for _ in range(count):
            yield "Entering jdeCacheAdd"
            self.records += 1
            yield self.confirm("ADD")

    def open(self, cursor):
        yield "    Open Cursor Success                     hCursor:[%s] hCache:[%s]" % (cursor, self.handle)
        yield self.confirm("OPEN")

    def fetch(self, cursor, count=1):
        for _ in range(count):
            yield "Entering jdeCacheFetchPosition   hCursor:[%s] hCache:[%s]" % (cursor, self.handle)
            yield self.confirm("FETCH")

    def fetch_failed(self, cursor):
        yield "Entering jdeCacheFetch   hCursor:[%s] hCache:[%s]" % (cursor, self.handle)
        yield "  jdeCacheFetch: no more records"

    def update(self, cursor):
        yield "Entering jdeCacheUpdate   hCursor:[%s] hCache:[%s]" % (cursor, self.handle)
        yield self.confirm("UPDATE")

    def delete(self, cursor):
        yield "Entering jdeCacheDelete   hCursor:[%s] hCache:[%s]" % (cursor, self.handle)
        self.records -= 1
        yield self.confirm("DELETE")

    def delete_all(self):
        yield "Entering jdeCacheDeleteAll hCache:[%s]" % self.handle
        self.records = 0
        yield self.confirm("DELETEALL")

    def reset(self, cursor):
        yield "Entering jdeCacheResetCursor   hCursor:[%s] hCache:[%s]" % (cursor, self.handle)
        yield self.confirm("RESET")

    def close(self, cursor):
        yield "Entering jdeCacheCloseCursor   hCursor:[%s] hCache:[%s]" % (cursor, self.handle)
        yield self.confirm("CLOSE")

    def terminate(self):
        yield "Entering jdeCacheTerminate hCache:[%s]" % self.handle
        yield self.confirm("TERM")

    def terminate_all(self):
        yield "Entering jdeCacheTerminateAll hCache:[%s]" % self.handle
        yield self.confirm("TERM ALL")


# ----------------------------------------------------------------------------------- order-entry.log

ITEMS = [("60011", "BC-1110", "Touring bike, red", 1000), ("60038", "BC-2290", "Mountain bike, 21 gears", 1000),
         ("60046", "HL-0400", "Helmet, adult", 4000), ("60054", "HB-2200", "Handlebar, drop", 1000),
         ("60062", "PD-0015", "Pedal pair", 6000)]


class OrderDesk(Job):
    """Sales order entry as its master business functions do it."""

    def __init__(self, *args, **more):
        super().__init__(*args, **more)
        self.cache = CacheTrace("%sF4211WorkFile" % self.rng.randrange(10 ** 7, 10 ** 8), "%08x" % self.rng.randrange(1 << 32))
        self.cursor = "%08X" % (0x09310010 + self.rng.randrange(4096) * 16)

    def begin(self, order, customer, name, no_tax=False):
        def body():
            yield from self.call("F0101GetAddressBookDetail", [("mnAddressNumber", customer)],
                                 self.select("F0101", "ABAN8 = %s.000000" % customer, "ABAN8, ABALPH, ABAT1, ABTAXC"),
                                 [("szNamealpha", text_value(name, 40)), ("szSearchType", "C  ")])
            yield from self.call("F03012GetCustomerMaster", [("mnAddressNumber", customer), ("szCompany", "00001")],
                                 self.select("F03012", "AIAN8 = %s.000000 AND AICO = '00000'" % customer),
                                 [("szPaymentTerms", "N30"), ("mnCreditLimit", "25000")])
            if no_tax:
                yield from self.call("F4008GetTaxRate", [("szTaxArea", "HARBOUR   ")],
                                     self.select("F4008", "TATXA1 = 'HARBOUR'", found=False), [("szErrorMessageID", "0037")], code=2)
            yield from self.call("X0010GetNextNumber", [("szSystemCode", "42  "), ("mnIndexNumber", "1")], self.next_number(order),
                                 [("mnNextNumber001", order)])
            yield from self.cache.create()
            yield from self.cache.open(self.cursor)
        return self.call("F4211FSBeginDoc", [("cCMDocAction", "A"), ("cCMProcessEdits", "1"), ("szCMComputerID", "DESK07         "),
                                             ("mnOrderNo", "0"), ("szOrderType", "SO"), ("szBusinessUnit", "          30"),
                                             ("mnShipToNo", customer)], body(), [("mnOrderNo", order), ("cCMErrorConditions", " ")])

    def next_number(self, order):
        yield from self.select("F0002", "NNSY = '42  '", "NNSY, NNUD01, NNN001")
        yield from self.update("F0002", "NNN001 = %d.000000" % (int(order) + 1), "NNSY = '42  '")

    def item(self, item, branch="          30", missing=False):
        short, second, text, _ = item

        def branch_body():
            yield from self.select("F4102", "IBITM = %s.000000 AND IBMCU = '%s'" % (short, branch), found=not missing)
            if missing:
                yield "ERROR: item %s is not set up in branch/plant 30" % second
        yield from self.call("GetItemMasterByUnknownItem", [("szUnknownItemNumber", text_value(second, 25))],
                             self.select("F4101", "IMLITM = '%s'" % second, "IMITM, IMLITM, IMAITM, IMDSC1, IMUOM1"),
                             [("mnItemNumberShort", short), ("szDescription1", text_value(text, 30))])
        yield from self.call("GetItemBranchRecord", [("mnShortItemNo", short), ("szBranchPlant", branch)], branch_body(),
                             [("szErrorMessageID", "0267" if missing else "    ")], code=2 if missing else 0)

    def price(self, item, quantity, slow=0):
        short = item[0]

        def schedule():
            yield from self.select("F4071", "ATAST = 'PREFER01'", "ATAST, ATPRGR, ATCPGP")
            yield from self.select(
                "F4072", "ADAST = 'DISC0%s' AND ADITM = %s.000000 AND ADEFTJ <= 124266 AND ADEXDJ >= 124266" % (short[-1], short),
                took=slow or 6 * MS)
            yield from self.select("F4106", "BPITM = %s.000000 AND BPMCU = '          30'" % short, "BPUPRC, BPCRCD")
        yield from self.call("CalculateSalesPriceAndCost", [("mnShortItemNo", short), ("mnQuantityTransaction", quantity), ("szPriceSchedule", "PREFER01")],
                             self.call("F4072CalculatePrice", [("mnShortItemNo", short), ("szAdjustmentName", "DISC01  ")], schedule(),
                                       [("mnPriceAdjusted", "182.5000")]),
                             [("mnUnitPrice", "182.5000"), ("mnUnitCost", "119.0000")])

    def availability(self, item, took=3 * MS):
        def body():
            yield from self.select("F41021", "LIITM = %s.000000 AND LIMCU = '          30'" % item[0],
                                   "LIITM, LIMCU, LILOCN, LIPQOH, LIPCOM, LIHCOM", took=took)
            yield from self.select("F41021", "LIITM = %s.000000" % item[0], "SUM(LIPQOH), SUM(LIPCOM)")
        return self.call("F41021CalculateAvailability", [("mnShortItemNo", item[0]), ("szBranchPlant", "          30")], body(),
                         [("mnAvailableQuantity", self.rng.randrange(12, 400))])

    def line(self, order, row, item, quantity, slow=0, missing=False):
        def edit():
            yield from self.item(item, missing=missing)
            if missing:
                return
            yield from self.price(item, quantity, slow)
            yield from self.availability(item)
            yield from self.call("GetUDC", [("szSystemCode", "40  "), ("szRecordTypeCode", "AT"), ("szUserDefinedCode", "        SO")],
                                 self.select("F0005", "DRSY = '40  ' AND DRRT = 'AT'", "DRKY, DRDL01"), [("szDescription001", "Sales order")])
            yield from self.cache.add()

        def body():
            yield from self.call("F4211EditLine", [("mnOrderNo", order), ("mnLineNo", row), ("szItemNo", text_value(item[1], 26)),
                                                   ("mnQuantity", quantity)], edit(), [("cErrorCode", "2" if missing else "0")],
                                 code=2 if missing else 0)
            if missing:
                yield from self.call("SetErrorMessage", [("szErrorMessageID", "0267"), ("szText", "Branch record invalid")])
        return self.call("F4211FSEditLine", [("mnCMJobNo", "1204"), ("mnOrderNo", order), ("mnLineNo", row), ("szItemNo", text_value(item[1], 26)),
                                             ("mnQtyOrdered", quantity), ("szUnitOfMeasure", "EA")], body(),
                         [("mnUnitPrice", "0" if missing else "182.5000"), ("cErrorConditions", "2" if missing else " ")], code=2 if missing else 0)

    def credit(self, customer, over=False):
        def body():
            yield from self.select("F03B11", "RPAN8 = %s.000000 AND RPPST <> 'P'" % customer, "SUM(RPAAP)")
            yield from self.statement(
                "SELECT T0.SDDOCO, T0.SDAEXP, T1.AIACL FROM %s T0, %s T1 WHERE ( T0.SDAN8 = T1.AIAN8 AND T0.SDAN8 = %s.000000 )"
                % (self.table("F4211"), self.table("F03012"), customer), "V4211A", took=18 * MS)
        return self.call("B4200760CheckCreditLimit", [("mnAddressNumber", customer), ("szCompany", "00001")], body(),
                         [("mnAmountOverLimit", "1311.50" if over else "0"), ("cHoldOrder", "Y" if over else "N")], code=1 if over else 0)

    def finish(self, order, rows, customer, over=False, duplicate=False, check=()):
        keys = ["SDKCOO", "SDDOCO", "SDDCTO", "SDLNID", "SDITM", "SDUORG", "SDUPRC", "SDNXTR"]

        def write(row, item):
            values = ["'00001'", order + ".000000", "'SO'", "%d.000000" % (row * 1000), item[0] + ".000000", "2.000000", "182.500000", "'520'"]
            yield from self.insert("F4211", keys, values, took=7 * MS)
            if duplicate and row == 2:
                yield from self.insert("F49211", ["UDKCOO", "UDDOCO", "UDDCTO", "UDLNID"], values[:4], took=11 * MS, error=[
                    "OCI0000179 - Error - ORA-00001: unique constraint (PRODDTA.F49211_PK) violated",
                    Raw("  the statement was INSERT INTO PRODDTA.F49211 (UDKCOO, UDDOCO, UDDCTO, UDLNID)"),
                    Raw("  with the values  '00001', %s, 'SO', %d" % (order, row * 1000))])
                yield "JDB3400009 - Failed to perform Insert for F49211"
                yield from self.update("F49211", "UDUPMJ = 124266", "UDDOCO = %s.000000 AND UDLNID = %d.000000" % (order, row * 1000))
            else:
                yield from self.insert("F49211", ["UDKCOO", "UDDOCO", "UDDCTO", "UDLNID"], values[:4])
            yield from self.update("F41021", "LIHCOM = LIHCOM + 2", "LIITM = %s.000000 AND LIMCU = '          30'" % item[0])

        def body():
            yield from self.credit(customer, over)
            yield from check
            yield from self.cache.fetch(self.cursor, len(rows))
            yield from self.cache.fetch_failed(self.cursor)
            for row, item in rows:
                failed = duplicate and row == 2
                yield from self.call("F4211WriteLine", [("mnOrderNo", order), ("mnLineNo", row)], write(row, item), code=1 if failed else 0)
            yield from self.insert("F4201", ["SHKCOO", "SHDOCO", "SHDCTO", "SHAN8", "SHHOLD"],
                                   ["'00001'", order + ".000000", "'SO'", customer + ".000000", "'C1'" if over else "'  '"])
            yield from self.cache.close(self.cursor)
            yield from self.cache.terminate()
        return self.call("F4211FSEndDoc", [("mnCMJobNo", "1204"), ("mnOrderNo", order), ("cUseWorkFiles", "2")], body(),
                         [("mnSalesOrderNo", order), ("cOrderOnHold", "1" if over else "0")], code=1 if over or duplicate else 0)


def annika():
    desk = OrderDesk("ANNIKA", "P42101", "BIKE0001")
    worker = "WRK:ANNIKA_0A3F5C10_P42101"
    yield Labelled("WRK:Starting jdeCallObject", "Entering JDB_InitUser with commit mode 0.")
    yield Labelled("WRK:Starting jdeCallObject", "Exiting JDB_InitUser with Success")
    yield from desk.call("B4210120ReadProcessingOptions", [("szVersion", "BIKE0001  "), ("szProgramName", "P42101    ")],
                         desk.select("F983051", "VRPID = 'P42101' AND VRVERS = 'BIKE0001'"), [("szOrderType", "SO")])
    # The first order goes through, though one price takes its time.
    yield from desk.begin("118204", "4242", "Brightwater Cycles")
    for row in (1, 2, 3):
        yield Wait(310 * MS)
        yield from desk.line("118204", row, ITEMS[row - 1], 2 * row, slow=1840 * MS if row == 3 else 0)
    yield from desk.finish("118204", [(r, ITEMS[r - 1]) for r in (1, 2, 3)], "4242")
    yield Labelled("WRK:Commit Remote User", "Entering JDB_CommitUser")
    yield Labelled("WRK:Commit Remote User", "ORACLE DBCommit conn=03F46130")
    yield Wait(9 * MS)
    yield Labelled("WRK:Commit Remote User", "Exiting JDB_CommitUser with Success")
    # She reads the next fax.
    yield Wait(41 * SECOND + 377 * MS)
    yield "[CARVELOT MESSAGE]Annika enters the order that fails (ticket SD-771)"
    yield from desk.begin("118205", "4277", "Harbour Street Velo", no_tax=True)
    yield from desk.line("118205", 1, ITEMS[0], 4)
    yield Wait(420 * MS)
    yield from desk.line("118205", 2, ITEMS[3], 10, missing=True)
    yield Wait(6 * SECOND + 52 * MS)
    yield from desk.line("118205", 2, ITEMS[4], 10)
    yield from desk.line("118205", 3, ITEMS[1], 1)
    yield from desk.finish("118205", [(1, ITEMS[0]), (2, ITEMS[4]), (3, ITEMS[1])], "4277", over=True, duplicate=True)
    yield Labelled(worker, "Entering JDB_RollbackUser")
    yield Labelled(worker, "Exiting JDB_RollbackUser with Success")


def tomas():
    desk = OrderDesk("TOMAS", "P41202", "ZJDE0001")
    yield Labelled("WRK:Init Remote User", "Entering JDB_InitUser with commit mode 0.")
    yield Labelled("WRK:Init Remote User", "Exiting JDB_InitUser with Success")
    for i, item in enumerate(ITEMS):
        yield Wait(700 * MS + i * 83 * MS)
        yield from desk.item(item)
        yield from desk.availability(item, took=2210 * MS if i == 3 else 5 * MS)
    # A reservation that another user holds.
    def reserve():
        yield from desk.select("F00095", "R7OBNM = 'F4102'", found=False)
        yield "Waiting for the record reservation of F4102 60038          30"
        yield Wait(8 * SECOND + 410 * MS)
        yield "The record reservation of F4102 60038          30 was granted"
        yield from desk.insert("F00095", ["R7OBNM", "R7USER", "R7JOBN"], ["'F4102'", "'TOMAS'", "'DESK11'"])
    yield from desk.call("F00095ReserveRecord", [("szObjectName", "F4102     "), ("mnShortItemNo", "60038")], reserve(),
                         [("cReserved", "1")])
    yield from desk.call("F4102UpdateSafetyStock", [("mnShortItemNo", "60038"), ("mnSafetyStock", "40")],
                         desk.update("F4102", "IBSAFE = 40.000000", "IBITM = 60038.000000 AND IBMCU = '          30'"))
    yield from desk.delete("F00095", "R7USER = 'TOMAS'")


def commitments():
    """A kernel that reposts commitments on its own."""
    job = Job("SCHED", "R42995", "XJDE0001")
    yield Labelled("WRK:Starting jdeCallObject", "Entering JDB_InitUser with commit mode 0.")
    for i, item in enumerate(ITEMS * 2):
        yield Wait(610 * MS + i * 37 * MS)

        def body(item=item, i=i):
            yield from job.select("F4211", "SDITM = %s.000000 AND SDNXTR < '999'" % item[0], "SUM(SDUORG)", took=30 * MS)
            yield from job.update("F41021", "LIPCOM = 0, LIHCOM = %d" % (6 + i), "LIITM = %s.000000" % item[0],
                                  took=3220 * MS if i == 6 else 8 * MS)
        yield from job.call("B4200520RepostCommitment", [("mnShortItemNo", item[0]), ("szBranchPlant", "          30")], body(),
                            [("mnRecordsUpdated", "1")], code=0)


def listener():
    """The other thread of that kernel: little to say, and long silences."""
    yield "Entering JDB_InitEnv"
    for i in range(6):
        yield Wait(12 * SECOND + i * 700 * MS)
        yield "Kernel heartbeat, %d requests in the queue" % (i % 3)
    yield "JDB3100076 - Failed to get the lock for the environment handle"
    yield "On JDENET_LISTEN the kernel goes on with the next request"


def console():
    """The order desk's own client: event rules around the calls."""
    job = OrderDesk("BIRGIT", "P4210", "BIKE0002", driver="ODBC:S")
    yield "Entering JDB_InitUser with commit mode 0."
    yield "RT: >>>Beginning ER:\tDialog is Initialized\tForm:W4210E\t"
    yield from job.call("B4210120ReadProcessingOptions", [("szVersion", "BIKE0002  ")], job.select("F983051", "VRPID = 'P4210'"), [("szOrderType", "SO")])
    yield "RT: <<<Finished  ER:\tDialog is Initialized\tForm:W4210E\t"
    yield Wait(3 * SECOND + 300 * MS)
    yield "RT: >>>Beginning ER:\tButton Clicked - Find\tForm:W4210E\t"
    yield from job.select("F4211", "SDAN8 = 4242.000000 AND SDDCTO = 'SO'", "SDKCOO, SDDOCO, SDDCTO, SDLNID", took=1302 * MS)
    for i in range(6):
        yield "RT: >>>Beginning ER:\tGrid Record is Fetched\tForm:W4210E\t"
        yield from job.call("GetUDC", [("szSystemCode", "40  "), ("szRecordTypeCode", "AT")],
                            job.select("F0005", "DRSY = '40  ' AND DRRT = 'AT' AND DRKY = '%d'" % (520 + 20 * i)),
                            [("szDescription001", "Status %d" % (520 + 20 * i))])
        yield "RT: <<<Finished  ER:\tGrid Record is Fetched\tForm:W4210E\t"
    yield "RT: <<<Finished  ER:\tButton Clicked - Find\tForm:W4210E\t"
    yield Wait(9 * SECOND + 120 * MS)
    yield "RT: >>>Beginning ER:\tButton Clicked - Delete\tForm:W4210E\t"
    yield from job.call("F4211DeleteLine", [("mnOrderNo", "118190"), ("mnLineNo", "1")],
                        job.call("F4211CheckStatus", [("szNextStatus", "620")], job.call(
                            "F40203GetActivityRule", [("szOrderType", "SO"), ("szLineType", "S ")],
                            job.select("F40203", "FSDCTO = 'SO' AND FSTRTY = '620'", found=False), [("szErrorMessageID", "0288")], code=2), code=2),
                        [("cErrorCode", "2")], code=2)
    yield "ERROR: the order line 118190 SO 00001 1.000 is past the status that allows a deletion"
    yield "RT: <<<Finished  ER:\tButton Clicked - Delete\tForm:W4210E\t"


def order_entry():
    return merge([
        Worker(4576, 3268, "WRK:ANNIKA_0A3F5C10_P42101", at(9, 12, 3, 250117), annika()),
        Worker(4576, 5012, "WRK:Call Object", at(9, 12, 5, 871002), tomas()),
        Worker(6120, 1984, "WRK:SCHED_04C7D2E8_R42995", at(9, 12, 4, 13440), commitments()),
        Worker(6120, 2044, "UNKNOWN", at(9, 12, 2, 990671), listener()),
        Worker(2208, 1176, "MAIN_THREAD", at(9, 12, 8, 402833), console()),
    ], 4211, dash_stamp("Sep 22"))


# -------------------------------------------------------------------- order-slow.log, order-well.log

def event(name, form, body):
    yield "RT: >>>Beginning ER:\t%s\tForm:%s\t" % (name, form)
    yield from body
    yield "RT: <<<Finished  ER:\t%s\tForm:%s\t" % (name, form)


class FairDesk(OrderDesk):
    """The order desk on the days of the trade fair: its carrier wants the weight of all that a customer has open."""

    OPEN_LINES = 400

    def open_weight(self, customer, one_by_one):
        def read_one(line):
            """One item through a table that stays open."""
            yield " SELECT  IMITM, IMLITM, IMUWUM FROM PRODDTA.F4101  WHERE  ( IMITM = %d.000000 )  " % (60011 + line * 7 % 311)
            yield "Entering DBPerformRequest"
            yield "ORACLE DBPerformRequest conn=03F46130 requ=%08X host (prod) reuse" % self.request
            yield Wait(9 * MS + self.rng.randrange(5 * MS))
            yield "Exiting DBPerformRequest"
            yield "Fetched the record"

        def body():
            if not one_by_one:
                yield from self.statement(
                    "SELECT SUM(T0.SDUORG * T1.IMUWUM) FROM PRODDTA.F4211 T0, PRODDTA.F4101 T1 WHERE ( T0.SDITM = T1.IMITM AND "
                    "T0.SDAN8 = %s.000000 AND T0.SDNXTR < '999' )" % customer, "V5542110", took=46 * MS)
                return
            yield from self.select("F4211", "SDAN8 = %s.000000 AND SDNXTR < '999'" % customer, "SDDOCO, SDLNID, SDITM, SDUORG", took=38 * MS)
            yield "Entering JDB_OpenTable(Table = F4101)"
            for line in range(self.OPEN_LINES):
                yield from read_one(line)
            yield "Entering JDB_CloseTable(Table = F4101)"
        return self.call("B5542110SumOpenWeight", [("mnAddressNumber", customer), ("cWeightUnit", "K")], body(),
                         [("mnOpenLines", self.OPEN_LINES), ("mnWeightTotal", "9377.25")])


def fair_order(one_by_one):
    desk = FairDesk("ANNIKA", "P42101", "BIKE0001", seed=2)
    order, customer = "118311", "4242"
    rows = [(row, ITEMS[row - 1]) for row in (1, 2, 3, 5)]
    yield Labelled("WRK:Starting jdeCallObject", "Entering JDB_InitUser with commit mode 0.")
    yield Labelled("WRK:Starting jdeCallObject", "Exiting JDB_InitUser with Success")
    yield from event("Dialog is Initialized", "W42101C", desk.call(
        "B4210120ReadProcessingOptions", [("szVersion", "BIKE0001  "), ("szProgramName", "P42101    ")],
        desk.select("F983051", "VRPID = 'P42101' AND VRVERS = 'BIKE0001'"), [("szOrderType", "SO")]))
    yield Wait(2 * SECOND + 115 * MS)
    yield from event("Row is Entered", "W42101C", desk.begin(order, customer, "Brightwater Cycles"))
    for row, item in rows:
        yield Wait(3 * SECOND + row * 410 * MS)
        yield from event("Row is Exited and Changed - Asynch", "W42101C", desk.line(order, row, item, 2 * row))
    yield Wait(4 * SECOND + 902 * MS)
    yield from event("Button Clicked - OK", "W42101C", desk.finish(
        order, rows, customer, check=desk.open_weight(customer, one_by_one)))
    yield Labelled("WRK:Commit Remote User", "Entering JDB_CommitUser")
    yield Labelled("WRK:Commit Remote User", "ORACLE DBCommit conn=03F46130")
    yield Wait(8 * MS)
    yield Labelled("WRK:Commit Remote User", "Exiting JDB_CommitUser with Success")


def heartbeats(count):
    """A kernel's thread with little to say."""
    yield "Entering JDB_InitEnv"
    for i in range(count):
        yield Wait(5 * SECOND)
        yield "Kernel heartbeat, %d requests in the queue" % (i % 2)


def order_slow():
    return merge([
        Worker(5188, 2904, "WRK:ANNIKA_0A41D2E0_P42101", at(10, 41, 7, 118204), fair_order(True)),
        Worker(5188, 3012, "UNKNOWN", at(10, 41, 5, 3071), heartbeats(8)),
    ], 5542110, dash_stamp("Sep 24"))


def order_well():
    return merge([
        Worker(7420, 1836, "WRK:ANNIKA_0A3C9B28_P42101", at(10, 38, 52, 640381), fair_order(False)),
        Worker(7420, 1900, "UNKNOWN", at(10, 38, 50, 911540), heartbeats(6)),
    ], 5542110, dash_stamp("Sep 25"))


# ------------------------------------------------------------------------------- worked-example.log

def worked_example():
    call, returned = "Calling Business function %s from %s (BSFNLevel = %d)", "Return value is %d for %s. (BSFNLevel = %d)"
    done = "Exiting DBPerformRequest"
    lines = [
        (0, "Entering JDB_InitUser with commit mode 0."),
        (0, call % ("F4211FSEditLine", "Level 1", 1)),
        (10, call % ("F4211EditLine", "F4211FSEditLine", 2)),
        (20, " SELECT * FROM PRODDTA.F4101 WHERE ( IMITM = 60011 )"),
        (50, done),
        (60, " SELECT * FROM PRODDTA.F4101 WHERE ( IMITM = 60038 )"),
        (100, done),
        (110, returned % (0, "F4211EditLine", 2)),
        (120, call % ("F4211WriteLine", "F4211FSEditLine", 2)),
        (130, " INSERT INTO PRODDTA.F4211 (SDDOCO, SDLNID) VALUES (118204, 1000)"),
        (190, done),
        (200, returned % (2, "F4211FSEditLine", 1)),
        (250, call % ("F4211FSEditLine", "Level 1", 1)),
        (270, returned % (0, "F4211FSEditLine", 1)),
    ]
    return ["Mar  4 %s - 2100/7 WRK:MILA\t%s" % (clock(at(9, 0) + millis * MS), text) for millis, text in lines]


# ---------------------------------------------------------------------------------- order-fails.log

class BlockedDesk(OrderDesk):
    """The order desk while another job keeps the locations of an item."""

    def reserve(self, item):
        def body():
            yield from self.statement(
                "SELECT  LIITM, LIMCU, LILOCN, LIHCOM FROM PRODDTA.F41021  WHERE  ( LIITM = %s.000000 AND LIMCU = '          30' )  FOR UPDATE WAIT 12"
                % item[0], "F41021", took=12 * SECOND + 41 * MS, error=[
                    "OCI0000179 - Error - ORA-30006: resource busy; acquire with WAIT timeout expired",
                    Raw("  on the table PRODDTA.F41021, which session 214"),
                    Raw("  (SCHED, R41413) has had since 09:41:02")])
        return self.call("F41021LockLocation", [("mnShortItemNo", item[0]), ("szBranchPlant", "          30")], body(),
                         [("szErrorMessageID", "078M")], code=2)

    def commit_line(self, order, row, item):
        def body():
            yield from self.insert("F4211", ["SDKCOO", "SDDOCO", "SDDCTO", "SDLNID", "SDITM", "SDNXTR"],
                                   ["'00001'", order + ".000000", "'SO'", "%d.000000" % (row * 1000), item[0] + ".000000", "'520'"], took=7 * MS)
            yield from self.call("F41021UpdateCommitment", [("mnShortItemNo", item[0]), ("mnQuantity", "2")], self.reserve(item),
                                 [("cErrorCode", "2")], code=2)
        return self.call("F4211WriteLine", [("mnOrderNo", order), ("mnLineNo", row)], body(), [("cErrorCode", "2")], code=2)

    def finish_blocked(self, order, rows, customer):
        def body():
            yield from self.credit(customer)
            yield from self.cache.fetch(self.cursor)
            yield from self.commit_line(order, *rows[0])
        return self.call("F4211FSEndDoc", [("mnCMJobNo", "1377"), ("mnOrderNo", order), ("cUseWorkFiles", "2")], body(),
                         [("mnSalesOrderNo", "0"), ("cErrorConditions", "2")], code=2)

    def cancel(self, order):
        """Neither call returns: the user's window has gone."""
        caller = "Level 1"
        for level, name in enumerate(["F4211FSCancelDoc", "F4211ClearWorkFile"], 1):
            yield "Calling Business function %s from %s for ANNIKA. Application Name [P42101], Version [BIKE0001] (BSFNLevel = %d)" % (
                name, caller, level)
            yield param_in(1, "mnCMJobNo", "1377")
            yield param_in(2, "mnOrderNo", order)
            caller = name
        for attempt in (1, 2, 3):
            yield Wait(850 * MS)
            yield "JDENET: no answer from the client of port 6014, attempt %d of 3" % attempt


def blocked_order():
    desk = BlockedDesk("ANNIKA", "P42101", "BIKE0001", seed=3)
    order, customer = "118340", "4277"
    rows = [(row, ITEMS[row]) for row in (1, 2, 4)]
    yield Labelled("WRK:Starting jdeCallObject", "Entering JDB_InitUser with commit mode 1.")
    yield Labelled("WRK:Starting jdeCallObject", "Exiting JDB_InitUser with Success")
    yield from event("Dialog is Initialized", "W42101C", desk.call(
        "B4210120ReadProcessingOptions", [("szVersion", "BIKE0001  "), ("szProgramName", "P42101    ")],
        desk.select("F983051", "VRPID = 'P42101' AND VRVERS = 'BIKE0001'"), [("szOrderType", "SO")]))
    yield from event("Row is Entered", "W42101C", desk.begin(order, customer, "Harbour Street Velo"))
    for row, item in rows:
        yield Wait(2 * SECOND + row * 370 * MS)
        yield from event("Row is Exited and Changed - Asynch", "W42101C", desk.line(order, row, item, row))
    yield Wait(3 * SECOND + 77 * MS)

    def end():
        yield "Entering JDB_BeginTransaction"
        yield "Exiting JDB_BeginTransaction with Success"
        yield from desk.finish_blocked(order, rows, customer)
        yield from desk.call("SetErrorMessage", [("szErrorMessageID", "078M"), ("szText", "Record reserved by another user")])
    yield from event("Button Clicked - OK", "W42101C", end())
    yield Labelled("WRK:Rollback Remote User", "Entering JDB_RollbackUser")
    yield Labelled("WRK:Rollback Remote User", "ORACLE DBRollback conn=03F46130")
    yield Labelled("WRK:Rollback Remote User", "Exiting JDB_RollbackUser with Success")
    yield Wait(21 * SECOND + 318 * MS)
    yield "RT: >>>Beginning ER:\tButton Clicked - Cancel\tForm:W42101C\t"
    yield from desk.cancel(order)


def blocking_job():
    """Rebuilds the commitments of a branch in one transaction, and keeps every location until its end."""
    job = Job("SCHED", "R41413", "XJDE0001")
    yield "Entering JDB_InitUser with commit mode 1."
    yield "Entering JDB_BeginTransaction"

    def rebuild():
        for i, item in enumerate(ITEMS):
            yield from job.select("F4211", "SDITM = %s.000000 AND SDNXTR < '999'" % item[0], "SUM(SDUORG)", took=(130 + 20 * i) * MS)
            yield from job.update("F41021", "LIHCOM = %d" % (14 + 3 * i), "LIITM = %s.000000 AND LIMCU = '          30'" % item[0], took=11 * MS)
        yield from job.update("F41021", "LIPCOM = 0, LIUPMJ = 124269", "LIMCU = '          30'", took=52 * SECOND + 700 * MS)
    yield from job.call("B4200520RebuildCommitments", [("szBranchPlant", "          30"), ("cMode", "F")], rebuild(), [("mnRecordsUpdated", "1184")])
    yield "Entering JDB_CommitTransaction"
    yield "Exiting JDB_CommitTransaction with Success"


def order_fails():
    return merge([
        Worker(5188, 2904, "WRK:ANNIKA_0A41D2E0_P42101", at(9, 40, 58, 207113), blocked_order()),
        Worker(6244, 1712, "WRK:SCHED_04C7D2E8_R41413", at(9, 41, 1, 84220), blocking_job()),
        Worker(5188, 3012, "UNKNOWN", at(9, 40, 57, 518), heartbeats(12)),
    ], 41021, dash_stamp("Sep 25"))


# ----------------------------------------------------------------------------------- cache-trace.log

def picking():
    job = Job("MILA", "P4915", "ZJDE0003")
    yield "Entering JDB_InitUser with commit mode 0."
    shipments = CacheTrace("48112207ShipmentHeader", "e5762678")
    pieces = CacheTrace("48112207ShipmentPieces", "e5762a10")
    rates = CacheTrace("48112207FreightRates", "e57630c8")

    def prepare():
        yield from shipments.create()
        yield from shipments.add(4)
        yield from pieces.create()
        yield from pieces.add(9)
        yield from rates.create()
        yield from rates.add(3)

    def rate():
        yield from shipments.open("09310010")
        for i in range(4):
            yield from shipments.fetch("09310010")
            yield from pieces.open("0931002%d" % i)
            yield from pieces.fetch("0931002%d" % i, 2 + i % 2)
            yield from pieces.fetch_failed("0931002%d" % i)
            yield from pieces.close("0931002%d" % i)
            yield from job.select("F4215", "XHSHPN = %d.000000" % (9100 + i), took=1720 * MS if i == 1 else 6 * MS)
            yield from rates.open("0931004%d" % i)
            yield from rates.fetch("0931004%d" % i)
            if i == 2:
                # A cursor that nobody closes.
                yield from rates.reset("0931004%d" % i)
                yield from rates.fetch("0931004%d" % i, 2)
                yield Wait(1600 * MS)
            else:
                yield from rates.close("0931004%d" % i)
            yield from shipments.update("09310010")
        yield from shipments.fetch_failed("09310010")
        yield from shipments.close("09310010")

    def clean():
        yield from pieces.delete_all()
        yield from pieces.terminate()
        yield from shipments.terminate()
        yield from rates.terminate_all()
        # Terminated a second time, by another function that does not know.
        yield from shipments.terminate()
    yield from job.call("F4941BuildShipments", [("szBranchPlant", "          30"), ("mnLoadNumber", "7701")], prepare(), [("mnShipments", "4")])
    yield from job.call("F4970RateShipments", [("mnLoadNumber", "7701")], rate(), [("mnAmountFreight", "412.80")], code=1)
    yield Wait(2 * SECOND + 40 * MS)
    yield from job.call("F4941ClearShipments", [("mnLoadNumber", "7701")], clean(), code=0)


def pricing(number_of_calls):
    job = Job("MILA", "P4074", "ZJDE0001")
    adjustments = CacheTrace("75976968DataMapCDISTCache", "0A4A14A8")
    yield "Entering JDB_InitUser with commit mode 0."
    for i in range(number_of_calls):
        def body(i=i):
            yield from job.select("F4072", "ADAST = 'DISC%02d' AND ADITM = 60011.000000" % i, took=3 * MS)
            if i == 0:
                yield from adjustments.create()
            else:
                yield from adjustments.attach(i + 1)
            yield from adjustments.add(1 + i % 3)
            yield from adjustments.open("0A4B%04X" % (i * 16))
            yield from adjustments.fetch("0A4B%04X" % (i * 16), 2)
            if i % 4 == 1:
                yield from adjustments.fetch_failed("0A4B%04X" % (i * 16))
            if i % 4 == 3:
                yield from adjustments.delete("0A4B%04X" % (i * 16))
            yield from adjustments.close("0A4B%04X" % (i * 16))
        yield from job.call("CacheProcessAdjustments", [("mnJobNumber", 3300 + i), ("cMode", "2")], body(), [("mnLinesRead", 2)])
        yield Wait(180 * MS)
    yield from adjustments.terminate()
    # A new cache takes over the handle of the one that has gone.
    renewed = CacheTrace("75976971DataMapCDISTCache", "0A4A14A8")
    yield from job.call("CacheProcessAdjustments", [("mnJobNumber", 3399), ("cMode", "1")], renewed.create(), [("mnLinesRead", 0)])
    yield from renewed.add(2)
    yield from renewed.terminate()


def stray():
    """A process that was traced only after its caches existed: they are known by handle alone."""
    ghost = CacheTrace("48108811LotMaster", "fe33a900")
    job = Job("KENJI", "P4108", "ZJDE0001")
    yield "Entering JDB_InitUser with commit mode 0."
    yield from ghost.attach(2)
    yield from job.call("F4108GetLot", [("szLot", "L240922-7")], job.select("F4108", "IOLOTN = 'L240922-7'"), code=0)
    yield from ghost.add(2)
    yield from ghost.open("FE340010")
    yield from ghost.open("FE340010")
    yield from ghost.fetch("FE340010", 3)
    yield from ghost.close("FE340010")
    yield from ghost.fetch_failed("FE340010")
    yield "CAC0001111 - Cursor not valid for the cache of the lot master"
    yield "CAC0001025 - Invalid cache handle hCache:[fe33a901]"
    yield from job.call("F4108UpdateLot", [("szLot", "L240922-7")], code=2)


def cache_trace():
    return merge([
        Worker(3348, 4120, "WRK:MILA_0C11A0F0_P4915", at(14, 2, 10, 5120), picking()),
        Worker(3348, 4188, "WRK:Call Object", at(14, 2, 20, 911), pricing(14)),
        Worker(5904, 2216, "WRK:KENJI_0C2200A4_P4108", at(14, 2, 11, 77410), stray()),
    ], 48, padded_stamp("Oct 11"))


# ------------------------------------------------------------------------------------- ube-batch.log

def sales_update():
    job = Job("BATCH", "R42800", "BIKE0001")
    yield "Entering JDB_InitUser with commit mode 2."
    # Lines of the batch engine bear no stamp. Of these only the ones of two words are records, and those whose
    # third word is a time.
    yield Raw("--UBE--[6]-- Processing Init Report at Report Level")
    yield Raw("--UBE--[2]-- InitReport")
    yield Raw("--UBE--[1]-- R42800_BIKE0001")
    yield from job.call("B4280000ReadProcessingOptions", [("szVersion", "BIKE0001  ")], job.select("F983051", "VRPID = 'R42800'"), [("cProofOrFinal", "1")])
    for section in range(1, 19):
        order = 118100 + section
        yield Raw("--UBE--[2]-- Section_S%d" % section)
        yield Raw("--UBE--[2]-- Starting UBE Message Loop")
        yield Raw("--UBE--[3]-- Object_SDDOCO")
        yield Raw("--UBE--[4]-- ER:Do_Section")
        if section == 18:
            yield Raw("--UBE--[2]-- Checkpoint %s  %d orders so far" % (clock(at(2, 10 + section // 2), digits=0), section))

        def body(section=section, order=order):
            yield from job.select("F4211", "SDDOCO = %d.000000 AND SDNXTR = '600'" % order, took=12 * MS)
            yield Raw("--UBE--[5]-- SELECT_F4211")
            yield from job.insert("F42119", ["SDDOCO", "SDDCTO", "SDLNID"], ["%d.000000" % order, "'SO'", "1000.000000"],
                                  took=2600 * MS if section == 9 else 10 * MS)
            yield from job.delete("F4211", "SDDOCO = %d.000000" % order)
            yield from job.call("F0911FSEditLine", [("mnDocumentNumber", order), ("szAccountNumber", "30.1340                      ")],
                                job.call("F0901ValidateAccount", [("szAccountId", "00061202")],
                                         job.select("F0901", "GMAID = '00061202'", found=section != 13), code=2 if section == 13 else 0),
                                [("cErrorConditions", "2" if section == 13 else " ")], code=2 if section == 13 else 0)
            if section == 13:
                yield "ERROR: account 30.1340 is not valid for company 00001, order %d is skipped" % order
                yield Raw("--UBE--[0]-- Error:AccountInvalid")
                yield "--UBE--[0]-- Error in section S%d, order %d" % (section, order)
        yield from job.call("F42800ProcessOrder", [("mnOrderNo", order), ("szOrderType", "SO")], body(), [("mnLines", "1")], code=1 if section == 13 else 0)
        yield Raw("--UBE--[6]-- Return from F42800ProcessOrder with the next record")
        yield Wait((480 + 35 * section) * MS)
    yield "--UBE--[1]-- Closing the print file, 7 pages"
    yield Wait(5 * SECOND)
    yield from job.call("F0011UpdateBatchStatus", [("mnBatchNo", "50411"), ("cStatus", "A")], job.update("F0011", "ICIST = 'A'", "ICICU = 50411.000000"))
    yield "--UBE--[2]-- Job ended normally, 17 of 18 orders updated"
    yield Raw("--UBE--[1]-- Finished")


def print_server():
    yield "Entering JDB_InitUser with commit mode 0."
    for page in range(1, 8):
        yield Wait(1500 * MS + page * 90 * MS)
        yield "JDB4100005 - Can't get the default printer, page %d goes to LPT30" % page if page == 4 else "Page %d was written to the print file" % page


def ube_batch():
    return merge([
        Worker(9012, 1184, "MAIN_THREAD", at(2, 10, 44, 120556), sales_update()),
        Worker(9012, 7320, "WRK:Print", at(2, 10, 45, 88), print_server()),
    ], 42800, dash_stamp("Oct  1"))


# ---------------------------------------------------------------------------------- night-batch.log

BACKUP = at(23, 59, 38)
ORDERS_OF_THE_NIGHT = 36


def night_update(start):
    """The sales update of the night. Its statements slow down when the backup begins, shortly before midnight."""
    job = Job("NIGHT", "R42800", "BIKE0009", seed=2)
    spent = [0]

    def rest(micros):
        spent[0] += micros
        return Wait(micros)

    def took(usual, under_backup):
        micros = under_backup if start + spent[0] >= BACKUP else usual
        spent[0] += micros
        return micros

    # Tracing was switched on in the middle of a call.
    yield "Return value is 0 for B9800100GetJobQueue. (BSFNLevel = 1)"
    yield "Entering JDB_InitUser with commit mode 2."
    yield Raw("--UBE--[6]-- Processing Init Report at Report Level")
    yield Raw("--UBE--[1]-- R42800_BIKE0009")
    yield from job.call("B4280000ReadProcessingOptions", [("szVersion", "BIKE0009  ")], job.select("F983051", "VRPID = 'R42800'"), [("cProofOrFinal", "1")])
    for number in range(1, ORDERS_OF_THE_NIGHT + 1):
        order = 118400 + number
        yield Raw("--UBE--[2]-- Section_S%d" % number)
        yield Raw("--UBE--[4]-- ER:Do_Section")

        def body(number=number, order=order):
            yield from job.select("F4211", "SDDOCO = %d.000000 AND SDNXTR = '600'" % order, took=took(14 * MS, 1460 * MS))
            yield from job.insert("F42119", ["SDDOCO", "SDDCTO", "SDLNID"], ["%d.000000" % order, "'SO'", "1000.000000"],
                                  took=took(2 * SECOND + number * 41 * MS, 51 * SECOND + number * 173 * MS))
            yield from job.call("F0911FSEditLine", [("mnDocumentNumber", order), ("szAccountNumber", "30.5010                      ")],
                                job.call("F0901ValidateAccount", [("szAccountId", "00061202")],
                                         job.select("F0901", "GMAID = '00061202'", took=took(4 * MS, 210 * MS))),
                                [("cErrorConditions", " ")])
            yield from job.delete("F4211", "SDDOCO = %d.000000" % order, took=took(9 * MS, 640 * MS))
        yield from job.call("F42800ProcessOrder", [("mnOrderNo", order), ("szOrderType", "SO")], body(), [("mnLines", "1")])
        yield rest(SECOND + 900 * MS)
    yield from job.call("F0011UpdateBatchStatus", [("mnBatchNo", "50488"), ("cStatus", "A")], job.update("F0011", "ICIST = 'A'", "ICICU = 50488.000000"))
    yield "--UBE--[2]-- Job ended normally, %d orders updated" % ORDERS_OF_THE_NIGHT
    yield Raw("--UBE--[1]-- Finished")


def night_batch():
    start = at(23, 58, 12, 407219)
    return merge([Worker(9716, 2208, "MAIN_THREAD", start, night_update(start))], 42801, dash_stamp("Oct 31", "Nov  1"))


# -------------------------------------------------------------------------------------- jas-web.log

class Jas:
    """One user of the web tier."""

    def __init__(self, user, start, story):
        self.user = user
        self.time = start
        self.story = story(self)
        self.ahead = None

    def say(self, source, text, level="APP"):
        return (level, source, text)

    def query(self, sql, values=(), took=20 * MS, rows=1):
        yield self.say("JDBJ", sql)
        if values:
            yield self.say("JDBJ", "SQL statement parameter marker values are :")
            for i, (value, kind) in enumerate(values):
                yield self.say("JDBJ", "Param%d: %s_Types.%s%s" % (i + 1, value, kind, "," if i + 1 < len(values) else ""))
        yield Wait(took)
        yield self.say("JDBJ", "Fetched %d rows" % rows, "DEBUG")

    def form(self, form, events, rows=3, opening=35 * MS, slow=0):
        program = form.split("_")[0]
        yield self.say("RUNTIME", "Object Called: %s.%s" % (program, form))
        yield Wait(opening)
        yield self.say("RUNTIME", "%s_EZGUI001, Event Starts :Dialog is Initialized" % form)
        yield from self.query("SELECT  * FROM PRODCTL.F9860 WHERE SIOBNM = ?", [(program, "VARCHAR")])
        yield self.say("RUNTIME", "%s_EZGUI001, Event Ends:Dialog is Initialized" % form)
        for line, event in enumerate(events):
            yield self.say("RUNTIME", "%s_EZGUI004, Event Starts :%s" % (form, event))
            yield self.say("RUNTIME", "%s_EZGUI004 at ER Line %d: Call Business Function" % (form, 3 + line * 7))
            yield Wait(12 * MS)
            yield from self.query("SELECT  SDDOCO, SDDCTO, SDAN8 FROM PRODDTA.F4211 WHERE SDAN8 = ? AND SDDCTO = ? ORDER BY SDDOCO ASC",
                                  [(str(4242 + line), "DECIMAL"), ("SO", "VARCHAR")], rows=rows, took=slow if slow and line == 0 else 20 * MS)
            yield self.say("RUNTIME", "%s_EZGUI004, Event Ends:%s" % (form, event))

    def server_call(self, name, took=60 * MS, code=0):
        yield self.say("BSFN", "Calling server component %s" % name, "DEBUG")
        yield self.say("BSFN", "Calling Business function %s from Level 1 for %s. Application Name [P4210], Version [ZJDE0001] (BSFNLevel = 1)" % (name, self.user))
        yield self.say("BSFN", param_in(1, "mnAddressNumber", "4242"))
        yield self.say("BSFN", param_in(2, "szBusinessUnit", "          30"))
        yield Wait(took)
        yield self.say("BSFN", param_out(3, "cErrorCode", code))
        yield self.say("BSFN", "Return value is %d for %s. (BSFNLevel = 1)" % (code, name))


TRACE = ["java.net.SocketTimeoutException: Read timed out",
         "\tat com.example.e1.net.JdeSocket.read(JdeSocket.java:212)",
         "\tat com.example.e1.net.NetChannel.receive(NetChannel.java:96)",
         "\tat com.example.e1.bsfn.RemoteCall.execute(RemoteCall.java:441)",
         "Caused by: java.io.IOException: connection reset by peer",
         "\t... 14 more"]


def web_annika(u):
    yield from u.form("P42101_W42101A", ["Button Clicked - Find", "Grid Record is Fetched", "Grid Record is Fetched"],
                      opening=1930 * MS)
    for i in range(9):
        yield Wait(400 * MS)
        yield from u.form("P4210_W4210A", ["Row is Exited and Changed - Inline", "Grid Column Clicked"])
        yield from u.server_call("F4211FSEditLine", took=2340 * MS if i == 2 else 80 * MS, code=2 if i == 2 else 0)
        if i == 2:
            yield u.say("RUNTIME", "Branch record invalid for item HB-2200 [0267]", "WARN")
            yield u.say("RUNTIME", "ERROR 0267 was set on control 24 of P4210_W4210A")
    yield from u.query("INSERT INTO PRODDTA.F4201 (SHKCOO, SHDOCO, SHDCTO, SHAN8, SHVR01) VALUES (?, ?, ?, ?, ?)",
                       [("00001", "VARCHAR"), ("118206", "DECIMAL"), ("SO", "VARCHAR"), ("4242", "DECIMAL"), ("PO 7.14 / rush", "VARCHAR")])
    yield from u.query("UPDATE PRODDTA.F0002 SET NNN001 = ? WHERE NNSY = ?", [("118207", "DECIMAL"), ("42  ", "VARCHAR")])
    yield from u.form("P42101_W42101C", ["Button Clicked - OK", "Post Button Clicked"], slow=2870 * MS)


def web_tomas(u):
    yield from u.form("P41202_W41202A", ["Button Clicked - Find"], rows=48)
    for i in range(11):
        yield Wait(650 * MS)
        yield from u.query("SELECT  T0.LIITM, T0.LIPQOH, T1.IMDSC1 FROM PRODDTA.F41021 T0, PRODDTA.F4101 T1 WHERE ( T0.LIITM = T1.IMITM AND T0.LIMCU = ? )",
                           [("          30", "VARCHAR")], took=1730 * MS if i == 3 else 40 * MS, rows=210)
        yield from u.form("P41202_W41202A", ["Grid Record is Fetched", "Grid Record is Fetched"])
    yield u.say("RUNTIME", "RT: >>>Beginning ER:\tExport Grid\tForm:W41202A\t")
    yield u.say("RUNTIME", "Exported 210 rows to a spreadsheet", "DEBUG")
    yield u.say("RUNTIME", "RT: <<<Finished  ER:\tExport Grid\tForm:W41202A\t")


def web_weber(u):
    yield from u.form("P0411_W0411A", ["Post Dialog is Initialized", "Button Clicked - Find"])
    for i in range(8):
        yield Wait(500 * MS)
        yield from u.query("SELECT  RPDOC, RPDCT, RPAAP FROM PRODDTA.F0411 WHERE RPAN8 = ? AND RPPST = ?", [(str(6001 + i), "DECIMAL"), ("A", "VARCHAR")])
        yield from u.server_call("F0411FSEditLine")
        if i == 3:
            yield Wait(30 * SECOND + 20 * MS)
            yield u.say("BSFN", "CallObject to the enterprise server entsrv01 timed out after 30000 ms", "SEVERE")
            for line in TRACE:
                yield Raw(line)
            yield u.say("BSFN", "Retrying F0411FSEndDoc on entsrv02", "WARN")
            yield from u.server_call("F0411FSEndDoc", took=400 * MS, code=1)
    yield from u.query("DELETE FROM PRODDTA.F0411Z1 WHERE VLEDUS = ? AND VLEDBT = ?", [("MWEBER", "VARCHAR"), ("50412", "VARCHAR")])
    yield from u.form("P0411_W0411G", ["Button Clicked - OK"])


def web_system(u):
    yield u.say("BASE", "The web server JAS_PROD of release 9.2 is up", "MANDATORY")
    yield Raw("[Line -1] [APP   ] JDE - [BASE]              the configuration was read from jas.ini")
    for i in range(12):
        yield Wait(4 * SECOND + i * 310 * MS)
        yield u.say("JAS", "Session monitor: %d sessions, %d MB used" % (3 + i % 2, 412 + 7 * i), "DEBUG")
        yield from u.query("SELECT  UGUSER, UGUGRP FROM SYS920.F0092 WHERE UGUSER = 'JDE'", took=5 * MS)
        if i == 5:
            yield u.say("JDBJ", "Connection pool PRODDTA: 18 of 20 connections are in use", "WARN")
        if i == 8:
            yield u.say("JDBJ", "Connection pool PRODDTA: no connection free for 10 s", "SEVERE")
            for line in TRACE[:3]:
                yield Raw(line)


def jas_stamp(day, ahead_of_source=""):
    def stamp(worker, step):
        level, source, text = step
        user = " " + worker.user if worker.user else ""
        return "%s %s [%-6s]%s - %s%-18s%s" % (day, clock(worker.time, ",", 3), level, user, ahead_of_source, "[%s]" % source, text)
    return stamp


def jas_web():
    # A user's lines come in blocks: one request is served before the next one's lines begin.
    users = [Jas("", at(8, 59, 54, 4000), web_system), Jas("ANNIKA", at(9, 0, 2, 118000), web_annika),
             Jas("TOMAS", at(9, 0, 9, 730000), web_tomas), Jas("MWEBER", at(9, 0, 15, 51000), web_weber)]
    return merge(users, 920, jas_stamp("22 Sep 2024"), pace=(1 * MS, 9 * MS), in_blocks=True)


# -------------------------------------------------------------------------------------- jas-slow.log

def web_lena(u):
    """Work with Orders: her grid asks for the weight of each row's item, all of them in one click."""
    yield from u.form("P42101_W42101A", [])
    yield Wait(2 * SECOND + 340 * MS)
    yield u.say("RUNTIME", "P42101_W42101A_EZGUI004, Event Starts :Button Clicked - Find")
    yield from u.query("SELECT  SDDOCO, SDDCTO, SDLNID, SDITM FROM PRODDTA.F4211 WHERE SDAN8 = ? AND SDNXTR < ?",
                       [("4242", "DECIMAL"), ("999", "VARCHAR")], took=66 * MS, rows=120)
    for row in range(120):
        yield from u.query("SELECT  IMITM, IMLITM, IMUWUM FROM PRODDTA.F4101 WHERE IMITM = ?",
                           [(str(60011 + row * 7 % 311), "DECIMAL")], took=18 * MS + row % 7 * 3 * MS)
    yield u.say("RUNTIME", "P42101_W42101A_EZGUI004, Event Ends:Button Clicked - Find")
    yield Wait(5 * SECOND)
    yield from u.server_call("F4211FSEditLine", took=190 * MS)
    yield from u.form("P42101_W42101C", ["Row is Exited and Changed - Inline", "Button Clicked - OK"])


def web_chart(u):
    """A start page's chart, which asks again and again and belongs to no form."""
    for i in range(45):
        yield from u.query("SELECT  COUNT(*) FROM PRODDTA.F4211 WHERE SDNXTR = ? AND SDMCU = ?",
                           [("540", "VARCHAR"), ("          30", "VARCHAR")], took=31 * MS + i % 5 * 2 * MS)
        yield Wait(420 * MS)


def jas_slow():
    users = [Jas("LENA", at(13, 20, 4, 211000), web_lena), Jas("OTTO", at(13, 20, 3, 90000), web_chart)]
    return merge(users, 4101, jas_stamp("25 Sep 2024"), pace=(1 * MS, 5 * MS), in_blocks=True)


# ------------------------------------------------------------------------------------- old-style.log

def receipts(user, count, slow, failing):
    job = Job(user, "P4312", "ZJDE0001", schema="PRODDTA/", driver="DB2")
    yield "Entering JDB_InitUser with commit mode 0."
    for i in range(count):
        def body(i=i):
            yield from job.select("F4311", "PDDOCO = %d.000000" % (44010 + i), took=(4 if i == slow else 0) * SECOND)
            if i == failing:
                yield from job.call("F4111EditLine", [("mnItemNumber", "70101")], job.select("F4101", "IMITM = 70101.000000", found=False), code=2)
                yield "ERROR: no item master for 70101, the receipt of order %d stops" % (44010 + i)
                return
            yield from job.call("F4111EditLine", [("mnItemNumber", "70100")], job.select("F4105", "COITM = 70100.000000"))
            yield from job.insert("F43121", ["PRDOCO", "PRLNID"], ["%d.000000" % (44010 + i), "1000.000000"])
        yield from job.call("F43121Receive", [("mnOrderNo", 44010 + i), ("szBranchPlant", "        M30")], body(), [("mnQuantityReceived", "12")],
                            code=2 if i == failing else 0, user=False)
        yield Wait((1 if i % 3 else 3) * SECOND)


def old_style():
    return merge([
        Worker(1548, 1300, "", at(16, 16, 27), receipts("WH01", 12, 5, 8)),
        Worker(1548, 1304, "", at(16, 16, 29), receipts("WH02", 9, -1, -1)),
        Worker(988, 991, "", at(16, 16, 31), receipts("WH03", 7, 2, 6)),
    ], 1548, star_stamp("Mar 18"))


# -------------------------------------------------------------------- windows-1252.log and utf-8.log

def letters(user, names):
    job = OrderDesk(user, "P01012", "ZJDE0001")
    yield "Entering JDB_InitUser with commit mode 0."
    for i, (name, street) in enumerate(names * 3):
        def body(i=i, name=name, street=street):
            yield from job.select("F0101", "ABALPH = '%s'" % name, "ABAN8, ABALPH", took=1250 * MS if i == 4 else 5 * MS)
            yield from job.update("F0116", "ALADD1 = '%s'" % street, "ALAN8 = %d.000000" % (8800 + i))
            if i == 7:
                yield "ERROR: %s has no tax code" % name
        yield from job.call("F0101UpdateAddress", [("mnAddressNumber", 8800 + i), ("szNameAlpha", text_value(name, 40)), ("szAddressLine1", text_value(street, 40))],
                            body(), [("cErrorCode", "1" if i == 7 else "0")], code=1 if i == 7 else 0)
        yield Wait(230 * MS)


def windows_1252():
    names = [("Müller & Söhne GmbH", "Königstraße 12"), ("Bäckerei Groß", "Große Bleichen 3 – Hinterhof"), ("„Zum Löwen“ Café", "Rue de l’Église 7"),
             ("Åkerström AB", "Västra Hamngatan 5"), ("Peña e Hijos", "Calle Núñez 9, 1º")]
    return merge([
        Worker(3180, 2764, "WRK:JÖRG_0B77A1C0_P01012", at(11, 5, 1, 250295), letters("JÖRG", names)),
        Worker(3180, 2790, "WRK:Call Object", at(11, 5, 2, 296), letters("ZOÉ", names[2:])),
    ], 1252, dash_stamp("Nov  4"))


def utf_8():
    names = [("Żółw i Synowie", "ul. Łąkowa 4"), ("Καφές Ώρα", "Οδός Ερμού 21"), ("山田自転車店", "東京都新宿区西新宿二丁目"), ("Veselý Cyklus", "Říčany 88"),
             ("Bike & Bell 🚲🔔", "Pier 7 – “the shed”")]
    return merge([
        Worker(18753, -167554736, "UNKNOWN", at(22, 41, 9, 3313), letters("MIŁOSZ", names)),
        Worker(18753, 77, "WRK:Call Object", at(22, 41, 10, 77801), letters("KENJI", names[1:])),
    ], 8, dash_stamp("Dec 31"))


# ----------------------------------------------- the logs of servers that speak other languages, or number

SHORT_MONTHS = [
    ("CZECH", "led úno bře dub kvě čvn čvc srp zář říj lis pro"),
    ("DANISH", "jan. feb. mar. apr. maj jun. jul. aug. sep. okt. nov. dec."),
    ("DUTCH", "jan. feb. mrt. apr. mei jun. jul. aug. sep. okt. nov. dec."),
    ("FINNISH", "tammik. helmik. maalisk. huhtik. toukok. kesäk. heinäk. elok. syysk. lokak. marrask. jouluk."),
    ("FRENCH", "janv. févr. mars avr. mai juin juil. août sept. oct. nov. déc."),
    ("GERMAN", "Jan. Feb. März Apr. Mai Juni Juli Aug. Sept. Okt. Nov. Dez."),
    ("GREEK", "Ιαν Φεβ Μαρ Απρ Μαΐ Ιουν Ιουλ Αυγ Σεπ Οκτ Νοε Δεκ"),
    ("HUNGARIAN", "jan. febr. márc. ápr. máj. jún. júl. aug. szept. okt. nov. dec."),
    ("ITALIAN", "gen feb mar apr mag giu lug ago set ott nov dic"),
    ("NORWEGIAN", "jan. feb. mars apr. mai juni juli aug. sep. okt. nov. des."),
    ("POLISH", "sty lut mar kwi maj cze lip sie wrz paź lis gru"),
    ("PORTUGUESE", "jan. fev. mar. abr. mai. jun. jul. ago. set. out. nov. dez."),
    ("RUSSIAN", "янв. февр. мар. апр. мая июн. июл. авг. сент. окт. нояб. дек."),
    ("SPANISH", "ENE FEB MAR ABR MAY JUN JUL AGO SEPT OCT NOV DIC"),
    ("SWEDISH", "jan. feb. mars apr. maj juni juli aug. sep. okt. nov. dec."),
    ("TURKISH", "Oca Şub Mar Nis May Haz Tem Ağu Eyl Eki Kas Ara"),
    ("CHINESE", "1月 2月 3月 4月 5月 6月 7月 8月 9月 10月 11月 12月"),
    ("JAPANESE", "1月 2月 3月 4月 5月 6月 7月 8月 9月 10月 11月 12月"),
    ("KOREAN", "1월 2월 3월 4월 5월 6월 7월 8월 9월 10월 11월 12월"),
]


def jas_languages():
    """One question a month and server; the eleventh month's fails on the Finnish one, and a trace says so."""
    lines = []
    for month in range(12):
        for place, (server, months) in enumerate(SHORT_MONTHS):
            lines.append("%d %s 2024 %s [APP   ] %s - [JDBJ]            SELECT  COUNT(*) FROM PRODDTA.F0911 WHERE GLPN = %d"
                         % (15, months.split()[month], clock(at(6, place, 1, 250000), ",", 3), server, month + 1))
            if month == 10 and server == "FINNISH":
                lines += TRACE
    return lines


GERMAN_TRACE = ["java.sql.SQLException: Fehler des Servers PRODDTA",
                "\tat com.example.e1.jdbj.Statement.execute(Statement.java:88)",
                "Verursacht durch: Die Verbindung des Mandanten 30 wurde getrennt"]


def web_joerg(u):
    yield from u.form("P0411_W0411A", ["Schaltfläche geklickt - Suchen"])
    for i in range(4):
        yield from u.server_call("F0411FSEditLine", took=1400 * MS if i == 2 else 90 * MS)
        if i == 2:
            yield u.say("JDBJ", "Die Verbindung für München ist gestört", "SEVERE")
            for line in GERMAN_TRACE:
                yield Raw(line)


def jas_german():
    return merge([Jas("JOERG", at(7, 30, 1, 50000), web_joerg)], 49, jas_stamp("12 März 2024"))


def french_order():
    names = [("Pêcheries Réunies", "12, rue de l’Église"), ("Café „Chez Noël“", "3, allée des Chênes")]
    return merge([Worker(5120, 4711, "WRK:HÉLÈNE_0C11A2F0_P01012", at(14, 20, 5, 100200), letters("HÉLÈNE", names))],
                 33, dash_stamp("févr. 12"))


def web_numbered(u):
    yield from u.form("P42101_W42101A", ["Button Clicked - Find"])
    yield from u.server_call("F4211FSEditLine", took=1700 * MS)


def jas_numbered():
    return merge([Jas("LENA", at(10, 1, 2, 30000), web_numbered)], 12345, jas_stamp("8 Oct 2024", "[12345]"))


def write(path, lines, encoding="utf-8", end="\n"):
    with open(path, "wb") as stream:
        for line in lines:
            stream.write((line + end).encode(encoding))


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    write(os.path.join(folder, "order-entry.log"), order_entry())
    write(os.path.join(folder, "order-slow.log"), order_slow())
    write(os.path.join(folder, "order-well.log"), order_well())
    write(os.path.join(folder, "worked-example.log"), worked_example())
    write(os.path.join(folder, "order-fails.log"), order_fails())
    write(os.path.join(folder, "cache-trace.log"), cache_trace())
    write(os.path.join(folder, "ube-batch.log"), ube_batch())
    write(os.path.join(folder, "night-batch.log"), night_batch())
    write(os.path.join(folder, "jas-web.log"), jas_web())
    write(os.path.join(folder, "jas-slow.log"), jas_slow())
    write(os.path.join(folder, "old-style.log"), old_style(), end="\r\n")
    write(os.path.join(folder, "windows-1252.log"), windows_1252(), encoding="cp1252", end="\r\n")
    write(os.path.join(folder, "utf-8.log"), utf_8())
    write(os.path.join(folder, "jas-languages.log"), jas_languages())
    write(os.path.join(folder, "jas-german.log"), jas_german(), encoding="cp1252", end="\r\n")
    write(os.path.join(folder, "french-order.log"), french_order(), encoding="cp1252", end="\r\n")
    write(os.path.join(folder, "jas-numbered.log"), jas_numbered())
    return 0


if __name__ == "__main__":
    sys.exit(main())
