#include "explore/pictures/PictureColors.h"

namespace carvelot {

namespace {

// `share` of 256 parts of one and the rest of the other.
PictureColor Mixed(PictureColor one, PictureColor other, int share) {
    const auto mix = [share](std::uint8_t a, std::uint8_t b) {
        return static_cast<std::uint8_t>((a * share + b * (256 - share)) / 256);
    };
    return {mix(one.red, other.red), mix(one.green, other.green), mix(one.blue, other.blue), one.alpha};
}

constexpr PictureColor kWhite{255, 255, 255};
constexpr PictureColor kBlack{0, 0, 0};

} // namespace

PictureColor ColorOf(FrameKind kind) {
    switch (kind) {
    case FrameKind::Function:
        return {0x00, 0x72, 0xB2};
    case FrameKind::Event:
        return {0x00, 0x9E, 0x73};
    case FrameKind::Statement:
        return {0xE6, 0x9F, 0x00};
    case FrameKind::Object:
        break;
    }
    return {0xCC, 0x79, 0xA7};
}

PictureColor ColorOf(Severity severity) {
    switch (severity) {
    case Severity::Error:
        return kFailedColor;
    case Severity::Warning:
        return {0xE6, 0x9F, 0x00};
    case Severity::Note:
        break;
    }
    return {0x56, 0xB4, 0xE9};
}

PictureColor Shaded(PictureColor color, std::uint32_t depth) {
    constexpr int kept[]{256, 228, 204, 228}; // of 256 parts
    return Mixed(color, kWhite, kept[depth % 4]);
}

PictureColor Faded(PictureColor color, PictureColor background) { return Mixed(color, background, 64); }

PictureColor TextOn(PictureColor color) {
    // As bright as the eye takes it.
    const int luma = 299 * color.red + 587 * color.green + 114 * color.blue;
    return luma > 150'000 ? kBlack : kWhite;
}

} // namespace carvelot
