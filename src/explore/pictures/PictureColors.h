// The colours of the pictures. Those of the kinds are told apart by colour-blind eyes, on light and on dark
// ground; a letter says the kind, too.
#pragma once

#include "explore/Findings.h"
#include "explore/FrameKeys.h"
#include "explore/pictures/Canvas.h"

namespace carvelot {

// What follows the look of the window.
struct PictureGround {
    PictureColor background{255, 255, 255};
    PictureColor text{0, 0, 0};
    PictureColor dimText{96, 96, 96};
    PictureColor line{208, 208, 208};      // between lanes, of the axis
    PictureColor selection{0, 120, 215};   // around what is selected
    PictureColor shade{128, 128, 128, 48}; // over what is not looked at, behind a range
};

inline constexpr PictureColor kFailedColor{0xD5, 0x5E, 0x00};
inline constexpr PictureColor kSilenceColor{0x80, 0x80, 0x80};
inline constexpr PictureColor kRestColor{0x9A, 0x9A, 0x9A}; // of what is too narrow to be told apart

PictureColor ColorOf(FrameKind kind);
PictureColor ColorOf(Severity severity);

// Deeper frames are a little lighter or darker, in turn, so that neighbours of one kind stay apart.
PictureColor Shaded(PictureColor color, std::uint32_t depth);
// As what a search does not match.
PictureColor Faded(PictureColor color, PictureColor background);
// Black or white, whichever is read better on a colour.
PictureColor TextOn(PictureColor color);

} // namespace carvelot
