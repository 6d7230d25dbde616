// One pass over a block of a log: where its lines end, and where to look for the words that classify them.
#pragma once

#include "parse/BlockScan.h"
#include "records/LogDetail.h"

namespace carvelot {

// The fastest scan that this machine can do. It marks every pair of letters that a word holds which
// classifies lines of the format.
BlockScan FastScan(LogFormat format);

// The scans by themselves, for tests: byte by byte, and in steps of 16 and 32 bytes, which are null where the
// build or the machine lacks them.
BlockScan ScanByBytes(LogFormat format);
BlockScan ScanBy16(LogFormat format);
BlockScan ScanBy32(LogFormat format);

} // namespace carvelot
