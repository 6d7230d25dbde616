#include "logcore/Classifier.h"

#include "logcore/ByteScan.h"
#include "logcore/Columns.h"
#include "logcore/NodeText.h"
#include "logcore/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace carvelot {

namespace {

constexpr std::size_t kReturnCodeColumn = 16;
constexpr std::size_t kCodeLength = 10;

constexpr std::array<std::string_view, 16> kListedCodes = {
    "CAC0001111", "CAC0001025", "CAC0001036", "JDB3100001", "JDB3100060", "JDB3100076",
    "JDB3100080", "JDB3300020", "JDB3400009", "JDB3500011", "JDB3600011", "JDB3700001",
    "JDB4100005", "JDB4100006", "JDB9900401", "JDB9901232"};

bool Holds(std::string_view text, std::string_view word) {
    return FindWord(text, word) != std::string_view::npos;
}

bool StartsListedCode(std::string_view text) {
    return text.size() >= kCodeLength && IsDigit(text[3]) &&
           std::find(kListedCodes.begin(), kListedCodes.end(), text.substr(0, kCodeLength)) !=
               kListedCodes.end();
}

bool StartsWithSQL(std::string_view text) {
    switch (text.empty() ? '\0' : text.front()) {
    case 'S':
        return Starts(text, "SELECT ");
    case 'U':
        return Starts(text, "UPDATE ");
    case 'D':
        return Starts(text, "DELETE ") || Starts(text, "DROP ");
    case 'A':
        return Starts(text, "ALTER ");
    case 'C':
        return Starts(text, "CREATE ");
    case 'I':
        return Starts(text, "INSERT ");
    default:
        return false;
    }
}

// Whether the first word begins so. A text without a blank has no first word.
bool FirstWordBegins(std::string_view text, std::string_view start) {
    return text.starts_with(start) && text.find(' ', start.size()) != std::string_view::npos;
}

// A text of the form "RT: >>>Beginning ER:" tab, name, tab, and perhaps "Form:", the form, tab.
Classification ClassifyEventRules(std::string_view text, std::string& scratch) {
    Classification result;
    scratch.clear();
    std::string_view rest = text.substr(text.find(' ') + 1);
    const std::string_view marker = UpTo(rest, '\t');
    if (marker == ">>>Beginning ER:") {
        result.kind = LOG_EVENT_START;
        rest.remove_prefix(marker.size() + 1);
        const std::string_view name = UpTo(rest, '\t');
        const std::size_t form = FindWord(text, "Form:");
        const std::string_view formName = form != std::string_view::npos && form > 0
                                              ? UpTo(text.substr(form + 5), '\t')
                                              : std::string_view{};
        if (IsAboveBlank(formName)) {
            scratch.append("Form: ").append(formName).append(" - ");
        }
        result.name = scratch.append(name);
    } else if (marker == "<<<Finished  ER:") {
        result.kind = LOG_EVENT_END;
    }
    return result;
}

// "at" names where the word's hinted pair of letters stands in the line; the word must lie in the text as a
// whole.
bool WordAt(std::string_view text, std::ptrdiff_t at, std::string_view word) {
    return at >= 0 && static_cast<std::size_t>(at) + word.size() <= text.size() &&
           SameShortText(text.substr(static_cast<std::size_t>(at), word.size()), word);
}

} // namespace

TextSigns FindSigns(std::string_view text) {
    TextSigns signs;
    signs.cache = Holds(text, "jdeCache") || Holds(text, "hCache:") || Holds(text, "hCursor:") ||
                  Holds(text, "Found existing cache");
    signs.jdbCode = std::any_of(kListedCodes.begin(), kListedCodes.end(),
                                [&](std::string_view code) { return Holds(text, code); });
    signs.sqlDone = Holds(text, "Exiting DBPerformRequest");
    signs.ube = Holds(text, "--UBE--");
    signs.eventStarts = Holds(text, "Event Starts :");
    signs.eventEnds = Holds(text, "Event Ends:");
    signs.erLine = Holds(text, "at ER Line");
    signs.objectCalled = Holds(text, "Object Called:");
    return signs;
}

TextSigns FindSigns(std::string_view text, std::string_view line, const LineHints& hints) {
    TextSigns signs;
    if (text.empty()) {
        return signs;
    }
    const std::ptrdiff_t textStart = text.data() - line.data();
    hints.ForEach([&](std::size_t place) {
        if (place < line.size() && line[place] == '-') {
            signs.lineHoldsUBE =
                signs.lineHoldsUBE || WordAt(line, static_cast<std::ptrdiff_t>(place) - 1, "--UBE--");
        }
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(place) - textStart;
        if (at < 0 || static_cast<std::size_t>(at) >= text.size()) {
            return;
        }
        // By the first letter of the word's pair.
        switch (text[static_cast<std::size_t>(at)]) {
        case 'e':
            signs.cache = signs.cache || WordAt(text, at - 2, "jdeCache");
            break;
        case 'h':
            signs.cache = signs.cache || WordAt(text, at, "hCache:") || WordAt(text, at, "hCursor:");
            break;
        case 'F':
            signs.cache = signs.cache || WordAt(text, at, "Found existing cache");
            break;
        case 'B':
            signs.sqlDone = signs.sqlDone || WordAt(text, at - 9, "Exiting DBPerformRequest");
            [[fallthrough]];
        case 'C':
            signs.jdbCode =
                signs.jdbCode || (at >= 2 && StartsListedCode(text.substr(static_cast<std::size_t>(at - 2))));
            break;
        case '-':
            signs.ube = signs.ube || WordAt(text, at - 1, "--UBE--");
            break;
        case 'E':
            signs.eventStarts = signs.eventStarts || WordAt(text, at, "Event Starts :");
            signs.eventEnds = signs.eventEnds || WordAt(text, at, "Event Ends:");
            break;
        case 'L':
            signs.erLine = signs.erLine || WordAt(text, at - 6, "at ER Line");
            break;
        case 'O':
            signs.objectCalled = signs.objectCalled || WordAt(text, at, "Object Called:");
            break;
        default:
            break;
        }
    });
    return signs;
}

bool HoldsUBE(const LogLine& line) {
    if (!line.hints.IsComplete()) {
        return Holds(line.bytes, "--UBE--");
    }
    bool found = false;
    line.hints.ForEach([&](std::size_t place) {
        found = found || WordAt(line.bytes, static_cast<std::ptrdiff_t>(place) - 1, "--UBE--");
    });
    return found;
}

namespace {

// By the first words that both formats know; LOG_NONE leaves the text to the tests behind.
Classification ClassifyFirstWord(std::string_view text) {
    const auto is = [](LogKind kind) { return Classification{kind, 0, {}}; };
    switch (text.front()) {
    case 'O':
        if (Starts(text, "On ")) {
            return is(LOG_ON);
        }
        if (FirstWordBegins(text, "OUT->[")) {
            return is(LOG_PARM_OUT);
        }
        break;
    case 'R':
        if (Starts(text, "Return ")) {
            return {LOG_RETURN, DigitValue(AsciiAtColumn(text, kReturnCodeColumn)), {}};
        }
        break;
    case 'E':
        if (FirstWordBegins(text, "ERROR")) {
            return is(LOG_ERROR);
        }
        break;
    case 'I':
        if (FirstWordBegins(text, "IN->[")) {
            return is(LOG_PARM_IN);
        }
        break;
    default:
        break;
    }
    return {};
}

} // namespace

Classification ClassifyDebugStatement(std::string_view text, const TextSigns& signs, std::string& scratch) {
    const auto is = [](LogKind kind) { return Classification{kind, 0, {}}; };
    if (text.empty()) {
        return {};
    }
    if (StartsWithSQL(text)) {
        return is(LOG_SQL);
    }
    if (Starts(text, "[JDBOLEDB] ")) {
        const std::string_view statement = text.substr(text.find(' '));
        for (const std::string_view word :
             {"SELECT", "UPDATE", "INSERT", "DELETE", "ALTER", "DROP", "CREATE"}) {
            if (Holds(statement, word)) {
                return is(LOG_SQL);
            }
        }
        return {};
    }
    if (Starts(text, "Calling ")) {
        return is(text == "Calling legacy API" || text == "Calling sqlplus.exe" ? LOG_NONE : LOG_CALL);
    }
    if (const Classification known = ClassifyFirstWord(text); known.kind != LOG_NONE) {
        return known;
    }
    if (Starts(text, "RT: ")) {
        return ClassifyEventRules(text, scratch);
    }
    if (signs.jdbCode || Starts(text, "JDB")) {
        return is(LOG_JDB_ERROR);
    }
    if (signs.cache) {
        return is(LOG_CACHE);
    }
    if (signs.sqlDone) {
        return is(LOG_SQL_DONE);
    }
    if (signs.ube) {
        return is(LOG_UBE);
    }
    return is(Starts(text, "[CARVELOT ") ? LOG_MESSAGE : LOG_NONE);
}

namespace {

// A SQL statement in a JAS log. With "?" marks it only comes to life on the line of its last parameter.
LogKind TakeStatement(std::string_view& text, PendingStatement& pending) {
    pending.statement.clear();
    pending.parameters = 0;
    std::string_view rest = text;
    for (std::size_t mark = rest.find('?'); mark != std::string_view::npos; mark = rest.find('?')) {
        std::array<char, 20> number{};
        char* const first = number.data();
        const char* const last = std::to_chars(first, first + number.size(), ++pending.parameters).ptr;
        pending.statement.append(rest.substr(0, mark + 1));
        pending.statement.append(first, static_cast<std::size_t>(last - first));
        rest.remove_prefix(mark + 1);
    }
    pending.statement.append(rest);
    if (pending.parameters == 0) {
        return LOG_SQL;
    }
    text = pending.statement;
    return LOG_NONE;
}

// Puts the value in the place of the leftmost "?1" or the like.
void FillIn(std::string& statement, const JASParam& param) {
    std::array<char, 12> mark{'?'};
    const char* const markEnd = std::to_chars(mark.data() + 1, mark.data() + mark.size(), param.index).ptr;
    const std::string_view marked(mark.data(), static_cast<std::size_t>(markEnd - mark.data()));
    const std::size_t place = FindWord(statement, marked);
    if (place == std::string_view::npos) {
        return;
    }
    const std::size_t quote = param.quoted ? 1 : 0;
    statement.replace(place, marked.size(), param.value.size() + 2 * quote, '\'');
    param.value.copy(statement.data() + place + quote, param.value.size());
}

LogKind TakeParameter(std::string_view& text, PendingStatement& pending, std::string& scratch) {
    if (Holds(text, "Param")) {
        FillIn(pending.statement, ParseJASParam(text, scratch));
        --pending.parameters;
    }
    if (pending.parameters > 0) {
        return LOG_NONE;
    }
    text = pending.statement;
    return LOG_SQL;
}

} // namespace

LogKind KindOfLevel(std::string_view level) {
    return level == "MANDATORY" ? LOG_MANDATORY
           : level == "WARN"    ? LOG_WARN
           : level == "SEVERE"  ? LOG_SEVERE
                                : LOG_NONE;
}

Classification ClassifyJASStatement(std::string_view& text, const TextSigns& signs, PendingStatement& pending,
                                    std::string& scratch) {
    const auto is = [](LogKind kind) { return Classification{kind, 0, {}}; };
    if (StartsWithSQL(text)) {
        return is(TakeStatement(text, pending));
    }
    if (pending.parameters > 0) {
        return is(TakeParameter(text, pending, scratch));
    }
    if (text.empty()) {
        return {};
    }
    if (Starts(text, "Calling ")) {
        return is(text == "Calling legacy API" || Holds(text, "Calling server component") ? LOG_NONE
                                                                                          : LOG_CALL);
    }
    if (const Classification known = ClassifyFirstWord(text); known.kind != LOG_NONE) {
        return known;
    }
    if (signs.eventStarts) {
        return is(LOG_EVENT_START);
    }
    if (signs.eventEnds) {
        return is(LOG_EVENT_END);
    }
    if (signs.erLine) {
        return is(LOG_ER_LINE);
    }
    if (signs.objectCalled) {
        return is(LOG_OBJECT_CALL);
    }
    if (Starts(text, "RT: ")) {
        return ClassifyEventRules(text, scratch);
    }
    return is(signs.cache ? LOG_CACHE : LOG_NONE);
}

JASParam ParseJASParam(std::string_view text, std::string& scratch) {
    constexpr std::size_t indexColumn = 5;
    JASParam param;
    text = TrimRight(text, " ,");
    const std::size_t dot = text.rfind('.');
    if (dot == std::string_view::npos) {
        return param;
    }
    const std::string_view type = text.substr(dot + 1);
    param.quoted = type == "VARCHAR" || type == "LONGVARCHAR";
    const std::size_t colon = text.find(':');
    if (colon != std::string_view::npos) {
        param.index = ReadInteger(FromColumn(text.substr(0, colon), indexColumn, scratch));
        const std::size_t types = FindWord(text, "_Types.");
        if (types != std::string_view::npos && types > colon) {
            // One character behind the colon is passed over.
            param.value = FromColumn(text.substr(colon + 1, types - colon - 1), 1, scratch);
        }
    }
    return param;
}

} // namespace carvelot
