// Records as JSON names them: by their index, null for none.
#pragma once

#include "records/LogDetail.h"
#include "text/JsonWriter.h"

#include <optional>
#include <string_view>

namespace carvelot {

inline std::optional<std::uint32_t> IndexOf(RecordIndex record) {
    return record == kNoRecord ? std::nullopt : std::optional(Number(record));
}

template <class List> void WriteRecords(CJsonWriter& json, std::string_view key, const List& records) {
    json.Key(key);
    const CJsonWriter::CArray array(json);
    for (const RecordIndex record : records) {
        json.Value(IndexOf(record));
    }
}

} // namespace carvelot
