#include "explore/FrameWalk.h"

#include "analysis/BSFNAnalysis.h"
#include "explore/FrameNames.h"
#include "explore/TextsAhead.h"

#include <algorithm>

namespace carvelot {

CFrameWalk::CFrameWalk(CFrames& frames, const CCarvelotDoc& session, const CClock& clock,
                       const CStreams& streams, std::int64_t shortestSilence)
    : m_result(frames), m_details(session.m_listDetails), m_clock(clock), m_streamOf(streams),
      m_bJAS(session.m_nLogFormat == LOG_FORMAT_JAS), m_nShortestSilence(shortestSilence),
      m_streams(streams.Count()) {}

void CFrameWalk::Run(CExploreProgress* progress) {
    constexpr CKindSet namedByText{LOG_CALL, LOG_RETURN, LOG_EVENT_START, LOG_OBJECT_CALL};
    const auto count = static_cast<std::uint32_t>(m_details.Size());
    for (std::uint32_t i = 0; i < count; ++i) {
        CheckAt(progress, i);
        FetchTextAhead(m_details, i, namedByText);
        Take(RecordIndex{i});
    }
    for (std::uint32_t number = 0; number < m_streams.size(); ++number) {
        if (!m_streams[number].open.empty()) {
            EndFrom(number, 0, kNoRecord, false, kNoResult);
        }
    }
}

void CFrameWalk::Take(RecordIndex record) {
    const std::uint32_t number = m_streamOf.Of(record);
    Stream& stream = m_streams[number];
    Reach(stream, record);
    const LogKind kind = m_details.Kind(record);
    if (stream.pending != kNoFrame) {
        EndPending(stream, record, kind);
    }
    switch (kind) {
    case LOG_CALL:
        Call(number, record);
        break;
    case LOG_RETURN:
        Return(number, record);
        break;
    case LOG_EVENT_START:
        StartEvent(number, record);
        break;
    case LOG_EVENT_END:
        if (stream.newestEvent != kNoPlace) {
            EndFrom(number, stream.newestEvent, record, true, kNoResult);
        }
        break;
    case LOG_SQL:
        StartStatement(number, record);
        break;
    case LOG_OBJECT_CALL:
        StartObjectCall(number, record);
        break;
    default:
        break;
    }
}

void CFrameWalk::Reach(Stream& stream, RecordIndex record) {
    const std::int64_t before = stream.now;
    stream.now = std::max(before, m_clock[record]);
    const auto step = static_cast<std::uint64_t>(stream.now) - static_cast<std::uint64_t>(before);
    if (step >= static_cast<std::uint64_t>(m_nShortestSilence) && before != kNotBegun) [[unlikely]] {
        m_result.m_silences.push_back({record, static_cast<std::int64_t>(step)});
    }
}

// The web tier writes no end of a statement or object call: its user's next record is one. In a debug log the
// end of a request ends the statement, unless something else has begun or ended meanwhile.
void CFrameWalk::EndPending(Stream& stream, RecordIndex record, LogKind kind) {
    constexpr CKindSet others{LOG_SQL, LOG_CALL, LOG_RETURN, LOG_EVENT_START, LOG_EVENT_END};
    if (m_bJAS || kind == LOG_SQL_DONE) {
        Frame& frame = m_result.m_frames[stream.pending];
        frame.end = stream.now;
        frame.ended = record;
        frame.closed = true;
        stream.pending = kNoFrame;
    } else if (others.Has(kind)) {
        stream.pending = kNoFrame;
    }
}

void CFrameWalk::Call(std::uint32_t number, RecordIndex record) {
    const CallWords words = ReadCallWords(LOG_CALL, m_details.Text(record), m_strScratch);
    if (words.name.empty()) {
        return;
    }
    Stream& stream = m_streams[number];
    if (words.level > 0) {
        // Each call leaves nothing of its level or a higher one below it, so that the levels rise.
        const auto found = std::lower_bound(
            stream.levelled.begin(), stream.levelled.end(), words.level,
            [&](std::uint32_t place, std::int32_t level) { return stream.open[place].level < level; });
        if (found != stream.levelled.end()) {
            EndFrom(number, *found, record, false, kNoResult);
        }
    }
    Open(number, record, m_result.m_keys.Number(FrameKind::Function, words.name), words.level);
}

void CFrameWalk::Return(std::uint32_t number, RecordIndex record) {
    const CallWords words = ReadCallWords(LOG_RETURN, m_details.Text(record), m_strScratch);
    if (words.name.empty()) {
        return;
    }
    const std::uint32_t key = m_result.m_keys.Number(FrameKind::Function, words.name);
    const std::uint32_t place = words.level == 0 ? NewestOfKey(number, key)
                                                 : NewestOfLevelledKey(number, LevelledKey(key, words.level));
    if (place == kNoPlace) {
        m_result.m_orphanReturns.push_back({record, key});
        return;
    }
    EndFrom(number, place, record, true, static_cast<std::int8_t>(m_details.ReturnCode(record)));
}

void CFrameWalk::StartEvent(std::uint32_t number, RecordIndex record) {
    const std::string_view name =
        EventName(m_details.DisplayName(record), m_details.Text(record), m_strScratch);
    Open(number, record, m_result.m_keys.Number(FrameKind::Event, name), 0);
}

void CFrameWalk::StartStatement(std::uint32_t number, RecordIndex record) {
    m_streams[number].pending = Add(number, record, StatementKey(record));
}

// Few tables are named in millions of statements.
std::uint32_t CFrameWalk::StatementKey(RecordIndex record) {
    const auto makeKey = [&] {
        const std::string_view name =
            StatementName(OperationWordOf(m_details, record), m_details.TableName(record), m_strScratch);
        return m_result.m_keys.Number(FrameKind::Statement, name);
    };
    const SqlOperation operation = m_details.Operation(record);
    if (operation == SQL_NONE) {
        return makeKey();
    }
    std::uint32_t& key = m_statementKeys.At(
        PairOf(static_cast<std::uint32_t>(operation), m_details.TableNumber(record)), kNoKey);
    if (key == kNoKey) {
        key = makeKey();
    }
    return key;
}

void CFrameWalk::StartObjectCall(std::uint32_t number, RecordIndex record) {
    const std::string_view name = ReadObjectName(m_details.Text(record), m_strScratch);
    m_streams[number].pending = Add(number, record, m_result.m_keys.Number(FrameKind::Object, name));
}

std::uint32_t CFrameWalk::Add(std::uint32_t number, RecordIndex record, std::uint32_t key) {
    const Stream& stream = m_streams[number];
    const std::uint32_t frame = m_result.Count();
    const std::uint32_t parent = stream.open.empty() ? kNoFrame : stream.open.back().frame;
    m_result.m_frames.Add(
        {record, record, parent, key, stream.now, stream.now, kNoResult, false, false, number});
    return frame;
}

void CFrameWalk::Open(std::uint32_t number, RecordIndex record, std::uint32_t key, std::int32_t level) {
    Stream& stream = m_streams[number];
    const auto place = static_cast<std::uint32_t>(stream.open.size());
    OpenFrame open{Add(number, record, key), key, level, kNoKey, kNoPlace, kNoPlace};
    std::uint32_t& newest = NewestOfKey(number, key);
    open.sameKeyBelow = newest;
    newest = place;
    m_result.m_frames[open.frame].withinItsKey = open.sameKeyBelow != kNoPlace;
    if (m_result.m_keys.Kind(key) == FrameKind::Function) {
        open.levelledKey = LevelledKey(key, level);
        std::uint32_t& newestOfLevel = NewestOfLevelledKey(number, open.levelledKey);
        open.sameBelow = newestOfLevel;
        newestOfLevel = place;
        if (level > 0) {
            stream.levelled.push_back(place);
        }
    } else {
        open.sameBelow = stream.newestEvent;
        stream.newestEvent = place;
    }
    stream.open.push_back(open);
}

void CFrameWalk::EndFrom(std::uint32_t number, std::uint32_t place, RecordIndex record, bool closed,
                         std::int8_t result) {
    Stream& stream = m_streams[number];
    while (stream.open.size() > place) {
        const OpenFrame& open = stream.open.back();
        Frame& frame = m_result.m_frames[open.frame];
        frame.end = stream.now;
        frame.ended = record;
        if (stream.open.size() == place + 1) {
            frame.closed = closed;
            frame.result = result;
        }
        NewestOfKey(number, open.key) = open.sameKeyBelow;
        if (open.levelledKey == kNoKey) {
            stream.newestEvent = open.sameBelow;
        } else {
            NewestOfLevelledKey(number, open.levelledKey) = open.sameBelow;
            if (open.level > 0) {
                stream.levelled.pop_back();
            }
        }
        stream.open.pop_back();
    }
}

std::uint32_t& CFrameWalk::NewestOfKey(std::uint32_t number, std::uint32_t key) {
    return m_newestOfKey.At(PairOf(number, key), kNoPlace);
}

std::uint32_t& CFrameWalk::NewestOfLevelledKey(std::uint32_t number, std::uint32_t levelledKey) {
    return m_newestOfLevelledKey.At(PairOf(number, levelledKey), kNoPlace);
}

std::uint32_t CFrameWalk::LevelledKey(std::uint32_t key, std::int32_t level) {
    const auto [levelled, isNew] =
        m_levelledKeys.FindOrAdd(PairOf(key, static_cast<std::uint32_t>(level)), m_nLevelledKeys);
    m_nLevelledKeys += isNew ? 1 : 0;
    return levelled;
}

} // namespace carvelot
