#include "parse/Classifier.h"

#include "records/NodeText.h"
#include "text/ByteScan.h"
#include "text/Integers.h"
#include "text/TextColumns.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

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
template <std::size_t size> bool FirstWordBegins(std::string_view text, const char (&start)[size]) {
    return Starts(text, start) && text.find(' ', size - 1) != std::string_view::npos;
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
        scratch.append(name);
        result.made = Classification::Made::Name;
    } else if (marker == "<<<Finished  ER:") {
        result.kind = LOG_EVENT_END;
    }
    return result;
}

} // namespace

bool StartsListedCode(std::string_view text, std::size_t at) {
    return at + kCodeLength <= text.size() && IsDigit(text[at + 3]) &&
           std::find(kListedCodes.begin(), kListedCodes.end(), text.substr(at, kCodeLength)) !=
               kListedCodes.end();
}

TextSigns FindSigns(std::string_view text) {
    TextSigns signs;
    const auto take = [&signs](TextSigns::Sign sign, bool found) { signs.found |= found ? sign : 0U; };
    take(TextSigns::SIGN_CACHE, Holds(text, "jdeCache") || Holds(text, "hCache:") ||
                                    Holds(text, "hCursor:") || Holds(text, "Found existing cache"));
    take(TextSigns::SIGN_JDB_CODE, std::any_of(kListedCodes.begin(), kListedCodes.end(),
                                               [&](std::string_view code) { return Holds(text, code); }));
    take(TextSigns::SIGN_SQL_DONE, Holds(text, "Exiting DBPerformRequest"));
    take(TextSigns::SIGN_UBE, Holds(text, kUBESign));
    take(TextSigns::SIGN_EVENT_STARTS, Holds(text, "Event Starts :"));
    take(TextSigns::SIGN_EVENT_ENDS, Holds(text, "Event Ends:"));
    take(TextSigns::SIGN_ER_LINE, Holds(text, "at ER Line"));
    take(TextSigns::SIGN_OBJECT_CALLED, Holds(text, "Object Called:"));
    return signs;
}

namespace {

constexpr Classification Is(LogKind kind) { return {kind, Classification::Made::Nothing, 0}; }

// By the first words that both formats know and that begin no SQL; LOG_NONE leaves the text to the tests
// behind.
Classification ClassifyFirstWord(std::string_view text) {
    switch (text.front()) {
    case 'O':
        if (Starts(text, "On ")) {
            return Is(LOG_ON);
        }
        if (FirstWordBegins(text, "OUT->[")) {
            return Is(LOG_PARM_OUT);
        }
        break;
    case 'R':
        if (Starts(text, "Return ")) {
            return {LOG_RETURN, Classification::Made::Nothing,
                    DigitValue(AsciiAtColumn(text, kReturnCodeColumn))};
        }
        break;
    case 'E':
        if (FirstWordBegins(text, "ERROR")) {
            return Is(LOG_ERROR);
        }
        break;
    case 'I':
        if (FirstWordBegins(text, "IN->[")) {
            return Is(LOG_PARM_IN);
        }
        break;
    default:
        break;
    }
    return {};
}

// Of a text that an OLE DB driver wrote.
std::string_view FindOLEDBWord(std::string_view text) {
    const std::string_view statement = text.substr(text.find(' '));
    for (const std::string_view word : {"SELECT", "UPDATE", "INSERT", "DELETE", "ALTER", "DROP", "CREATE"}) {
        const std::size_t place = FindWord(statement, word);
        if (place != std::string_view::npos) {
            return statement.substr(place, word.size());
        }
    }
    return {};
}

// `findSigns` is asked for the signs of a text whose first words do not decide.
template <class Find>
Classification ClassifyDebug(std::string_view text, const Find& findSigns, std::string& scratch) {
    if (text.empty()) {
        return {};
    }
    // The tests by first words, none of which another one with the same first letter would take.
    switch (text.front()) {
    case 'S':
    case 'U':
    case 'D':
    case 'A':
        if (StartsWithSQL(text)) {
            return Is(LOG_SQL);
        }
        break;
    case 'C':
        if (Starts(text, "Calling ")) {
            return Is(text == "Calling legacy API" || text == "Calling sqlplus.exe" ? LOG_NONE : LOG_CALL);
        }
        if (StartsWithSQL(text)) {
            return Is(LOG_SQL);
        }
        break;
    case 'I':
        if (StartsWithSQL(text)) {
            return Is(LOG_SQL);
        }
        [[fallthrough]];
    case 'O':
    case 'E':
        if (const Classification known = ClassifyFirstWord(text); known.kind != LOG_NONE) {
            return known;
        }
        break;
    case 'R':
        if (Starts(text, "RT: ")) {
            return ClassifyEventRules(text, scratch);
        }
        if (const Classification known = ClassifyFirstWord(text); known.kind != LOG_NONE) {
            return known;
        }
        break;
    case '[':
        if (Starts(text, "[JDBOLEDB] ")) {
            return Is(FindOLEDBWord(text).empty() ? LOG_NONE : LOG_SQL);
        }
        break;
    case 'J':
        if (Starts(text, "JDB")) {
            return Is(LOG_JDB_ERROR);
        }
        break;
    default:
        break;
    }
    const TextSigns signs = findSigns();
    if (signs.Hold(TextSigns::SIGN_JDB_CODE)) {
        return Is(LOG_JDB_ERROR);
    }
    if (signs.Hold(TextSigns::SIGN_CACHE)) {
        return Is(LOG_CACHE);
    }
    if (signs.Hold(TextSigns::SIGN_SQL_DONE)) {
        return Is(LOG_SQL_DONE);
    }
    if (signs.Hold(TextSigns::SIGN_UBE)) {
        return Is(LOG_UBE);
    }
    return Is(Starts(text, "[CARVELOT ") ? LOG_MESSAGE : LOG_NONE);
}

// A SQL statement in a JAS log. With "?" marks it only comes to life on the line of its last parameter.
Classification TakeStatement(std::string_view& text, PendingStatement& pending, bool ascii) {
    pending.statement.clear();
    pending.parameters = 0;
    pending.ascii = ascii;
    pending.begin = 0;
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
        return Is(LOG_SQL);
    }
    text = pending.statement;
    return {LOG_NONE, Classification::Made::Text, 0};
}

// Puts the value in the place of the leftmost "?1" or the like.
void FillIn(PendingStatement& pending, const JASParam& param) {
    std::string& statement = pending.statement;
    pending.begin = std::min(statement.find('?', pending.begin), statement.size());
    std::array<char, 16> mark{'?'};
    const char* const markEnd = std::to_chars(mark.data() + 1, mark.data() + mark.size(), param.index).ptr;
    const std::string_view marked(mark.data(), static_cast<std::size_t>(markEnd - mark.data()));
    const std::string_view rest = std::string_view(statement).substr(pending.begin);
    const std::size_t found =
        SameShortText(rest.substr(0, marked.size()), marked) ? 0 : FindWord(rest, marked);
    if (found == std::string_view::npos) {
        return;
    }
    const std::size_t place = pending.begin + found;
    const std::size_t quote = param.quoted ? 1 : 0;
    statement.replace(place, marked.size(), param.value.size() + 2 * quote, '\'');
    param.value.copy(statement.data() + place + quote, param.value.size());
}

Classification TakeParameter(std::string_view& text, PendingStatement& pending, std::string& scratch,
                             bool ascii) {
    if (Starts(text, "Param") || Holds(text, "Param")) {
        pending.ascii = pending.ascii && ascii;
        FillIn(pending, ParseJASParam(text, scratch, ascii));
        --pending.parameters;
    }
    if (pending.parameters > 0) {
        return Is(LOG_NONE);
    }
    text = pending.statement;
    return {LOG_SQL, Classification::Made::Text, 0};
}

template <class Find>
Classification ClassifyJAS(std::string_view& text, const Find& findSigns, PendingStatement& pending,
                           std::string& scratch, bool ascii) {
    if (StartsWithSQL(text)) {
        return TakeStatement(text, pending, ascii);
    }
    if (pending.parameters > 0) {
        return TakeParameter(text, pending, scratch, ascii);
    }
    if (text.empty()) {
        return {};
    }
    if (Starts(text, "Calling ")) {
        return Is(text == "Calling legacy API" || Holds(text, "Calling server component") ? LOG_NONE
                                                                                          : LOG_CALL);
    }
    if (const Classification known = ClassifyFirstWord(text); known.kind != LOG_NONE) {
        return known;
    }
    const TextSigns signs = findSigns();
    if (signs.Hold(TextSigns::SIGN_EVENT_STARTS)) {
        return Is(LOG_EVENT_START);
    }
    if (signs.Hold(TextSigns::SIGN_EVENT_ENDS)) {
        return Is(LOG_EVENT_END);
    }
    if (signs.Hold(TextSigns::SIGN_ER_LINE)) {
        return Is(LOG_ER_LINE);
    }
    if (signs.Hold(TextSigns::SIGN_OBJECT_CALLED)) {
        return Is(LOG_OBJECT_CALL);
    }
    if (Starts(text, "RT: ")) {
        return ClassifyEventRules(text, scratch);
    }
    return Is(signs.Hold(TextSigns::SIGN_CACHE) ? LOG_CACHE : LOG_NONE);
}

} // namespace

std::string_view FindOperationWord(std::string_view text) {
    if (StartsWithSQL(text)) {
        return text.substr(0, text.find(' '));
    }
    return Starts(text, "[JDBOLEDB] ") ? FindOLEDBWord(text) : std::string_view{};
}

Classification ClassifyDebugStatement(std::string_view text, std::string& scratch) {
    return ClassifyDebug(
        text, [text] { return FindSigns(text); }, scratch);
}

Classification ClassifyDebugStatement(std::string_view text, TextSigns signs, std::string& scratch) {
    return ClassifyDebug(
        text, [signs] { return signs; }, scratch);
}

LogKind KindOfLevel(std::string_view level) {
    return level == "MANDATORY" ? LOG_MANDATORY
           : level == "WARN"    ? LOG_WARN
           : level == "SEVERE"  ? LOG_SEVERE
                                : LOG_NONE;
}

Classification ClassifyJASStatement(std::string_view& text, PendingStatement& pending, std::string& scratch) {
    return ClassifyJAS(
        text, [&text] { return FindSigns(text); }, pending, scratch, false);
}

Classification ClassifyJASStatement(std::string_view& text, TextSigns signs, PendingStatement& pending,
                                    std::string& scratch) {
    return ClassifyJAS(
        text, [signs] { return signs; }, pending, scratch, true);
}

JASParam ParseJASParam(std::string_view text, std::string& scratch, bool ascii) {
    constexpr std::size_t indexColumn = 5;
    const auto fromColumn = [&](std::string_view part, std::size_t column) {
        return ascii ? part.substr(std::min(column, part.size())) : FromColumn(part, column, scratch);
    };
    JASParam param;
    while (!text.empty() && (text.back() == ' ' || text.back() == ',')) {
        text.remove_suffix(1);
    }
    const std::size_t dot = FindLastNear(text, '.');
    if (dot == std::string_view::npos) {
        return param;
    }
    const std::string_view type = text.substr(dot + 1);
    param.quoted = SameShortText(type, "VARCHAR") || SameShortText(type, "LONGVARCHAR");
    const std::size_t colon = FindNear(text, ':');
    if (colon != std::string_view::npos) {
        param.index = ReadInteger(fromColumn(text.substr(0, colon), indexColumn));
        const std::size_t types = FindWord(text, "_Types.");
        if (types != std::string_view::npos && types > colon) {
            // One character behind the colon is passed over.
            param.value = fromColumn(text.substr(colon + 1, types - colon - 1), 1);
        }
    }
    return param;
}

} // namespace carvelot
