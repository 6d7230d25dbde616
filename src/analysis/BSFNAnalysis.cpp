#include "analysis/BSFNAnalysis.h"

#include "text/ByteScan.h"
#include "text/Integers.h"
#include "text/TextColumns.h"

#include <algorithm>
#include <string>

namespace carvelot {

namespace {

constexpr std::string_view kCallPhrase = "Calling Business function";
constexpr std::string_view kLevelPhrase = "BSFNLevel = ";
constexpr std::string_view kObjectPhrase = "Object Called:";
constexpr std::size_t kObjectNameColumn = 15;
constexpr std::uint64_t kUnknownDuration = ~std::uint64_t{0};

// What a call that ended earlier than it began has added: the low 32 bits of the 13 hours that a silence or a
// statement gets, so about an hour and four minutes.
constexpr std::uint64_t kBackwardCall = 0xE57F53FF;

} // namespace

CallWords ReadCallWords(LogKind kind, std::string_view text, std::string& scratch) {
    CallWords words;
    if (kind == LOG_CALL) {
        const std::size_t place = FindWord(text, kCallPhrase);
        if (place != std::string_view::npos) {
            words.name = UpTo(FromColumn(text.substr(place + kCallPhrase.size()), 1, scratch), ' ');
        }
    } else {
        const std::size_t place = FindWord(text, "for ");
        if (place != std::string_view::npos) {
            words.name = TrimRight(UpTo(text.substr(place + 4), ' '), ".");
        }
    }
    const std::size_t place = FindWord(text, kLevelPhrase);
    if (place != std::string_view::npos) {
        const std::string_view level = text.substr(place + kLevelPhrase.size());
        words.level = ReadInteger(level.substr(0, level.find(')')));
    }
    return words;
}

std::string_view ReadObjectName(std::string_view text, std::string& scratch) {
    if (FindWord(text, kObjectPhrase) == std::string_view::npos) {
        return {};
    }
    const std::string_view candidate = FromColumn(text, kObjectNameColumn, scratch);
    const std::size_t dot = candidate.find('.');
    return dot == std::string_view::npos ? candidate : candidate.substr(dot + 1);
}

CallLine ReadCallLine(CDetailList& details, LogKind kind, std::string_view text) {
    std::string scratch;
    const CallWords words = ReadCallWords(kind, text, scratch);
    return {details.InternName(words.name), words.level};
}

std::uint32_t CBSFNAnalysis::FindOrAdd(const CDetailList& details, std::uint32_t name,
                                       std::string_view location) {
    const auto [place, isNew] = m_placeByName.FindOrAdd(name, static_cast<std::uint32_t>(m_functions.size()));
    if (isNew) {
        CBSFN& function = m_functions.emplace_back();
        function.m_strName = details.Name(name);
        function.m_strLocation = location;
    }
    return place;
}

void CBSFNAnalysis::Open(std::uint32_t function, RecordIndex record, std::int32_t level) {
    auto& instances = m_functions[function].m_instances;
    std::uint32_t& newest = m_newestOpen.At(OpenKey(function, level), kNoInstance);
    instances.push_back({record, level, 0, 0, 0, newest});
    newest = static_cast<std::uint32_t>(instances.size() - 1);
}

void CBSFNAnalysis::AddCall(CDetailList& details, const AnalysisSettings& settings, RecordIndex record,
                            const CallLine& line) {
    if (details.Kind(record) == LOG_CALL) {
        Open(FindOrAdd(details, line.function, "Local"), record, line.level);
    } else {
        CloseInstances(details, settings, FindOrAdd(details, line.function, {}), record, line.level);
    }
}

std::uint32_t CBSFNAnalysis::AddObjectCall(CDetailList& details, RecordIndex record) {
    std::string scratch;
    const std::uint32_t name = details.InternName(ReadObjectName(details.Text(record), scratch));
    const std::uint32_t function = FindOrAdd(details, name, {});
    Open(function, record, 1);
    return function;
}

void CBSFNAnalysis::EndObjectCall(CDetailList& details, const AnalysisSettings& settings, RecordIndex record,
                                  std::uint32_t function) {
    CloseInstances(details, settings, function, record, 1);
}

void CBSFNAnalysis::CloseInstances(CDetailList& details, const AnalysisSettings& settings,
                                   std::uint32_t function, RecordIndex end, std::int32_t level) {
    std::uint32_t& newest = m_newestOpen.At(OpenKey(function, level), kNoInstance);
    const std::uint64_t endTime = details.Time(end);
    CBSFN& bsfn = m_functions[function];
    for (std::uint32_t place = newest; place != kNoInstance;) {
        CBSFN::CBSFNInstance& instance = bsfn.m_instances[place];
        place = instance.m_nOlderOpen;
        instance.m_result = details.ReturnCode(end);
        instance.m_endTime = endTime;
        const std::uint64_t startTime = details.Time(instance.m_pStart);
        if (startTime == 0) {
            instance.m_duration = kUnknownDuration;
            continue;
        }
        std::uint64_t duration = endTime - startTime;
        if (endTime < startTime) {
            duration += kBackwardCall;
        }
        instance.m_duration = duration;
        const float seconds = SecondsFromMicroseconds(duration);
        details.SetDuration(instance.m_pStart, seconds);
        if (seconds > settings.m_fThreshold) {
            m_listLongTasks.AddHead(instance.m_pStart);
        }
        bsfn.m_totalTime += duration;
        // A 0 is taken for "none yet", so a call of no time at all never stays the shortest.
        bsfn.m_longest = bsfn.m_longest == 0 ? duration : std::max(bsfn.m_longest, duration);
        bsfn.m_shortest = bsfn.m_shortest == 0 ? duration : std::min(bsfn.m_shortest, duration);
    }
    // An end without a time leaves its calls open: the next return at this level closes them once more.
    if (endTime != 0) {
        newest = kNoInstance;
    }
}

} // namespace carvelot
