#include "metadata/ExactStream.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "metadata/Id3v2Header.h"
#include "metadata/MpegAnalysis.h"
#include "util/Text.h"

namespace jk {
namespace {

constexpr std::int32_t kFallbackBitrate = 128;
// More than the longest frame there is (MPEG-2.5 Layer II at 160 kbit/s and 8 kHz: 2881 bytes).
constexpr std::int64_t kMaxFrameBytes = 4096;
// Writers that stack ID3v2 tags stack a few; a longer chain is garbage.
constexpr int kMaxStackedTags = 8;
// ReadVbrHeader looks at no byte past this far into a frame (the LAME fields behind a Xing
// header with every flag set end at 180).
constexpr std::int64_t kVbrReach = 192;
// The search window takes bytes in steps of at least this much (most files need less: the
// first frame and the next header).
constexpr std::int64_t kWindowStep = 2048;

constexpr int kSampleRates[3] = {44100, 48000, 32000};

std::uint32_t BigEndian32(const std::uint8_t* p) {
    return (static_cast<std::uint32_t>(p[0]) << 24) | (static_cast<std::uint32_t>(p[1]) << 16) |
           (static_cast<std::uint32_t>(p[2]) << 8) | p[3];
}

std::uint32_t LittleEndian32(const std::uint8_t* p) {
    return (static_cast<std::uint32_t>(p[3]) << 24) | (static_cast<std::uint32_t>(p[2]) << 16) |
           (static_cast<std::uint32_t>(p[1]) << 8) | p[0];
}

bool Matches(const std::uint8_t* p, const char* mark) {
    return std::memcmp(p, mark, std::strlen(mark)) == 0;
}

std::int32_t ClampTo32(double value) {
    if (!(value >= 0)) {
        return 0;
    }
    if (value > static_cast<double>(std::numeric_limits<std::int32_t>::max())) {
        return std::numeric_limits<std::int32_t>::max();
    }
    return static_cast<std::int32_t>(RoundHalfEven(value));
}

// What a VBR header in the first frame tells.
struct VbrInfo {
    bool present = false;
    bool constant = false;         // an "Info" header: the frame's own bitrate holds
    bool bytesHoldHeader = false;  // Xing counts its own frame in bytes but not in frames
    std::int64_t frames = -1;
    std::int64_t bytes = -1;
    std::int64_t encoderSamples = 0;  // LAME's encoder delay and padding, not heard
};

// The Xing or "Info" header sits behind the side information; VBRI 32 bytes behind the header.
VbrInfo ReadVbrHeader(const MpegFrameHeader& frame, const std::uint8_t* data, std::int64_t avail) {
    VbrInfo info;
    if (frame.layer != 3) {
        return info;
    }
    std::int64_t xing = 4;
    if (frame.mpeg1) {
        xing += frame.channelMode == 3 ? 17 : 32;
    } else {
        xing += frame.channelMode == 3 ? 9 : 17;
    }
    if (xing + 8 <= avail && (Matches(data + xing, "Xing") || Matches(data + xing, "Info"))) {
        info.present = true;
        info.constant = Matches(data + xing, "Info");
        info.bytesHoldHeader = true;
        const std::uint32_t flags = BigEndian32(data + xing + 4);
        std::int64_t pos = xing + 8;
        if ((flags & 1) != 0 && pos + 4 <= avail) {
            info.frames = BigEndian32(data + pos);
            pos += 4;
        }
        if ((flags & 2) != 0 && pos + 4 <= avail) {
            info.bytes = BigEndian32(data + pos);
            pos += 4;
        }
        if ((flags & 4) != 0) {
            pos += 100;
        }
        if ((flags & 8) != 0) {
            pos += 4;
        }
        // LAME's extension: the version text, then the delay and padding 21 bytes on.
        if (pos + 24 <= avail && (Matches(data + pos, "LAME") || Matches(data + pos, "L3.99"))) {
            const std::uint8_t* d = data + pos + 21;
            const std::int64_t delay = (d[0] << 4) | (d[1] >> 4);
            const std::int64_t padding = ((d[1] & 0x0F) << 8) | d[2];
            info.encoderSamples = delay + padding;
        }
        return info;
    }
    constexpr std::int64_t kVbri = 4 + 32;
    if (kVbri + 18 <= avail && Matches(data + kVbri, "VBRI")) {
        info.present = true;
        info.bytes = BigEndian32(data + kVbri + 10);
        info.frames = BigEndian32(data + kVbri + 14);
    }
    return info;
}

bool SameStream(const MpegFrameHeader& a, const MpegFrameHeader& b) {
    return a.versionBits == b.versionBits && a.layer == b.layer && a.sampleRate == b.sampleRate;
}

// The bytes of [start, Limit()) as the frame search sees them. The search's rules look at the
// whole window (a candidate near its end is judged by what the window holds), but only the
// bytes it actually looks at are read: mostly the first frame and the next header.
class SearchWindow {
public:
    SearchWindow(ByteSource& source, std::int64_t start)
        : m_source(source), m_start(start), m_limit(start), m_held(start) {}

    std::int64_t Limit() const { return m_limit; }
    void SetLimit(std::int64_t limit) { m_limit = limit; }
    ReadFault Fault() const { return m_fault; }

    // Makes [start, min(end, Limit())) readable; false when the file can't be read.
    bool Ensure(std::int64_t end) {
        end = std::min(end, m_limit);
        if (end <= m_held) {
            return true;
        }
        // Growing by what is held at least, so a long scan asks the source for few ranges.
        const std::int64_t step = std::max(kWindowStep, m_held - m_start);
        const std::int64_t want = std::min(m_limit, std::max(end, m_held + step));
        const Outcome<ByteView> view = m_source.View(m_start, want - m_start);
        if (!view) {
            m_fault = view.Fault();
            return false;
        }
        m_base = view->data();
        m_held = want;
        return true;
    }
    // Valid up to the end last ensured, until the next Ensure.
    const std::uint8_t* At(std::int64_t offset) const { return m_base + (offset - m_start); }

    // The first `byte` in [from, Limit()); -1 when there is none, or the read failed (Fault()).
    std::int64_t Find(std::uint8_t byte, std::int64_t from) {
        while (from < m_limit) {
            if (!Ensure(from + 1)) {
                return -1;
            }
            const void* hit = std::memchr(At(from), byte, static_cast<std::size_t>(m_held - from));
            if (hit != nullptr) {
                return from + (static_cast<const std::uint8_t*>(hit) - At(from));
            }
            from = m_held;
        }
        return -1;
    }

    // The VBR header of the frame at `pos`, as read with the window's bytes from there on.
    std::optional<VbrInfo> VbrHeaderAt(const MpegFrameHeader& frame, std::int64_t pos) {
        // Bytes past kVbrReach are never looked at, so holding fewer of them changes nothing.
        if (!Ensure(pos + kVbrReach)) {
            return std::nullopt;
        }
        return ReadVbrHeader(frame, At(pos), std::min(m_held, m_limit) - pos);
    }

private:
    ByteSource& m_source;
    std::int64_t m_start;
    std::int64_t m_limit;
    std::int64_t m_held;  // [m_start, m_held) is in hand
    const std::uint8_t* m_base = nullptr;
    ReadFault m_fault = ReadFault::None;
};

enum class Verdict { Confirmed, Unconfirmed, NeedMore, Failed };

// Judges a header at `pos` with the bytes of the window in hand.
Verdict JudgeCandidate(const MpegFrameHeader& frame, SearchWindow& window, std::int64_t pos,
                       std::int64_t audioEnd) {
    const std::int64_t next = pos + frame.frameLength;
    const std::int64_t held = window.Limit();
    if (next == audioEnd) {
        return Verdict::Confirmed;  // the one frame, or the last, ends the audio exactly
    }
    if (next + 4 > audioEnd) {
        return Verdict::Unconfirmed;
    }
    if (next + 4 > held) {
        return Verdict::NeedMore;
    }
    if (!window.Ensure(next + 4)) {
        return Verdict::Failed;
    }
    const auto following = ParseMpegFrameHeader(ByteView(window.At(next), 4));
    if (following && SameStream(frame, *following)) {
        return Verdict::Confirmed;
    }
    const std::optional<VbrInfo> vbr = window.VbrHeaderAt(frame, pos);
    if (!vbr) {
        return Verdict::Failed;
    }
    return vbr->present ? Verdict::Confirmed : Verdict::Unconfirmed;
}

StreamFacts FactsOf(const MpegFrameHeader& frame, const VbrInfo& vbr, std::int64_t firstFrame,
                    std::int64_t audioEnd) {
    StreamFacts facts;
    const std::int64_t audioBytes = std::max<std::int64_t>(audioEnd - firstFrame, 0);
    if (vbr.present && vbr.frames > 0) {
        const std::int64_t samples = vbr.frames * frame.samplesPerFrame;
        std::int64_t bytes = vbr.bytes > 0 ? vbr.bytes : audioBytes;
        if (vbr.bytesHoldHeader) {
            bytes = std::max<std::int64_t>(bytes - frame.frameLength, 0);
        }
        facts.bitrate = vbr.constant
                            ? frame.bitrate
                            : ClampTo32(static_cast<double>(bytes) * 8.0 * frame.sampleRate /
                                        static_cast<double>(samples) / 1000.0);
        const std::int64_t heard = std::max<std::int64_t>(samples - vbr.encoderSamples, 0);
        facts.seconds = ClampTo32(static_cast<double>(heard) / frame.sampleRate);
    } else {
        facts.bitrate = frame.bitrate;
        facts.seconds = ClampTo32(static_cast<double>(audioBytes) * 8.0 / (frame.bitrate * 1000.0));
    }
    if (facts.bitrate <= 0) {
        facts.bitrate = kFallbackBitrate;
    }
    return facts;
}

}  // namespace

std::optional<MpegFrameHeader> ParseMpegFrameHeader(ByteView bytes) {
    if (bytes.size() < 4) {
        return std::nullopt;
    }
    const std::uint8_t b1 = bytes[1];
    const std::uint8_t b2 = bytes[2];
    if (bytes[0] != 0xFF || (b1 & 0xE0) != 0xE0) {
        return std::nullopt;
    }
    MpegFrameHeader h;
    h.versionBits = (b1 >> 3) & 3;
    const int layerBits = (b1 >> 1) & 3;
    const int bitrateIndex = b2 >> 4;
    const int rateIndex = (b2 >> 2) & 3;
    if (h.versionBits == 1 || layerBits == 0 || bitrateIndex == 0 || bitrateIndex == 15 ||
        rateIndex == 3) {
        return std::nullopt;
    }
    h.mpeg1 = h.versionBits == 3;
    h.layer = 4 - layerBits;
    h.bitrate = FrameBitrate(bytes[0], b1, b2);
    h.sampleRate = kSampleRates[rateIndex] / (h.mpeg1 ? 1 : (h.versionBits == 2 ? 2 : 4));
    h.channelMode = bytes[3] >> 6;
    const int padding = (b2 >> 1) & 1;
    const std::int64_t bits = static_cast<std::int64_t>(h.bitrate) * 1000;
    if (h.layer == 1) {
        h.samplesPerFrame = 384;
        h.frameLength = static_cast<int>((12 * bits / h.sampleRate + padding) * 4);
    } else if (h.layer == 2 || h.mpeg1) {
        h.samplesPerFrame = 1152;
        h.frameLength = static_cast<int>(144 * bits / h.sampleRate + padding);
    } else {
        h.samplesPerFrame = 576;
        h.frameLength = static_cast<int>(72 * bits / h.sampleRate + padding);
    }
    return h;
}

Outcome<std::int64_t> AudioStart(ByteSource& source) {
    std::int64_t pos = 0;
    for (int i = 0; i < kMaxStackedTags && pos + kID3v2HeaderBytes <= source.Size(); ++i) {
        const Outcome<ByteView> head = source.View(pos, kID3v2HeaderBytes);
        if (!head) {
            return head.Fault();
        }
        const std::optional<ID3v2HeaderInfo> tag = ParseID3v2Header(*head);
        if (!tag) {
            break;
        }
        pos += tag->totalSize;
    }
    return std::min(pos, source.Size());
}

Outcome<std::int64_t> AudioEnd(ByteSource& source) {
    std::int64_t end = source.Size();
    if (end >= 128) {
        const Outcome<ByteView> tag = source.View(end - 128, 3);
        if (!tag) {
            return tag.Fault();
        }
        if (Matches(tag->data(), "TAG")) {
            end -= 128;
        }
    }
    if (end >= 15) {
        const Outcome<ByteView> mark = source.View(end - 15, 15);
        if (!mark) {
            return mark.Fault();
        }
        const std::uint8_t* m = mark->data();
        bool digits = true;
        std::int64_t size = 0;
        for (int i = 0; i < 6; ++i) {
            digits = digits && m[i] >= '0' && m[i] <= '9';
            size = size * 10 + (m[i] - '0');
        }
        if (Matches(m + 6, "LYRICS200") && digits && size >= 11 && size + 15 <= end) {
            const Outcome<ByteView> begin = source.View(end - 15 - size, 11);
            if (!begin) {
                return begin.Fault();
            }
            if (Matches(begin->data(), "LYRICSBEGIN")) {
                end -= size + 15;
            }
        }
    }
    if (end >= 32) {
        const Outcome<ByteView> footer = source.View(end - 32, 32);
        if (!footer) {
            return footer.Fault();
        }
        const std::uint8_t* f = footer->data();
        if (Matches(f, "APETAGEX")) {
            const std::int64_t size = LittleEndian32(f + 12);
            const bool hasHeader = (LittleEndian32(f + 20) & 0x80000000u) != 0;
            const std::int64_t total = size + (hasHeader ? 32 : 0);
            if (size >= 32 && total <= end) {
                end -= total;
            }
        }
    }
    return end;
}

Outcome<StreamFacts> ReadStreamExactly(ByteSource& source) {
    const Outcome<std::int64_t> startOutcome = AudioStart(source);
    if (!startOutcome) {
        return startOutcome.Fault();
    }
    const Outcome<std::int64_t> endOutcome = AudioEnd(source);
    if (!endOutcome) {
        return endOutcome.Fault();
    }
    const std::int64_t start = *startOutcome;
    const std::int64_t end = *endOutcome;
    StreamFacts facts;
    if (end <= start) {
        return facts;
    }
    const std::int64_t searchEnd = std::min(start + kSyncSearchBytes, end);
    std::optional<MpegFrameHeader> fallback;
    std::int64_t fallbackPos = 0;
    std::int64_t from = start;
    SearchWindow window(source, start);
    // A first look at a few frames' worth; the whole search window only when that leaves it open.
    for (const std::int64_t reach : {kSyncProbeBytes, kSyncSearchBytes + kMaxFrameBytes}) {
        const std::int64_t held = std::min(start + reach, end) - start;
        window.SetLimit(start + held);
        bool needMore = false;
        std::int64_t pos = from;
        for (; pos < searchEnd && pos + 4 <= start + held; ++pos) {
            if (!window.Ensure(pos + 4)) {
                return window.Fault();
            }
            if (*window.At(pos) != 0xFF) {
                const std::int64_t next = window.Find(0xFF, pos);
                if (next < 0) {
                    if (window.Fault() != ReadFault::None) {
                        return window.Fault();
                    }
                    pos = start + held;
                    break;
                }
                pos = next - 1;
                continue;
            }
            const auto frame = ParseMpegFrameHeader(ByteView(window.At(pos), 4));
            if (!frame) {
                continue;
            }
            const Verdict verdict = JudgeCandidate(*frame, window, pos, end);
            if (verdict == Verdict::Failed) {
                return window.Fault();
            }
            if (verdict == Verdict::NeedMore) {
                needMore = true;
                break;
            }
            if (verdict == Verdict::Confirmed) {
                const std::optional<VbrInfo> vbr = window.VbrHeaderAt(*frame, pos);
                if (!vbr) {
                    return window.Fault();
                }
                return FactsOf(*frame, *vbr, pos, end);
            }
            if (!fallback) {
                fallback = frame;
                fallbackPos = pos;
            }
        }
        from = pos;
        if (!needMore && pos >= searchEnd) {
            break;
        }
        if (start + held >= end) {
            break;
        }
    }
    if (fallback) {
        // Only the first kVbrReach bytes of the frame are looked at.
        const std::int64_t frameBytes = std::min<std::int64_t>(end - fallbackPos, kMaxFrameBytes);
        const Outcome<ByteView> first =
            source.View(fallbackPos, std::min<std::int64_t>(frameBytes, kVbrReach));
        if (!first) {
            return first.Fault();
        }
        const VbrInfo vbr =
            ReadVbrHeader(*fallback, first->data(), static_cast<std::int64_t>(first->size()));
        return FactsOf(*fallback, vbr, fallbackPos, end);
    }
    facts.seconds = ClampTo32(static_cast<double>(end - start) * 8.0 / (kFallbackBitrate * 1000.0));
    return facts;
}

}  // namespace jk
