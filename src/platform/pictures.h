#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace quill::platform {

/// The place of a picture file's bytes: a file, a range of a file (a picture in an album), or memory (an attachment
/// that is not saved yet). Two sources that compare equal are the same picture.
struct PictureSource {
    std::string path = {};                               ///< absolute; ignored if `bytes` is set
    std::uint64_t offset = 0;                            ///< of the picture's first byte in the file
    std::uint64_t length = to_the_end;                   ///< in bytes
    std::shared_ptr<const std::string> bytes = nullptr;  ///< the whole picture file

    static constexpr std::uint64_t to_the_end = UINT64_MAX;

    bool operator==(const PictureSource&) const = default;
};

/// Width and height in pixels.
struct PictureSize {
    int width = 0;
    int height = 0;

    bool operator==(const PictureSize&) const = default;
};

/// The order of waiting requests: visible pictures first, then those that may soon be.
enum class PicturePriority : std::uint8_t {
    visible,    ///< the user is looking at its place
    nearby,     ///< a neighbour of a visible picture
    background  ///< nobody is waiting for it
};

struct PictureRequest {
    PictureSource source = {};
    PictureSize bounds = {};  ///< the largest size of the pixels, which keep the picture's proportions and are never
                              ///< enlarged; {0, 0}: full size
    std::size_t index = 0;    ///< frame of an animation, page of a TIFF, image of an icon; from 0
    PicturePriority priority = PicturePriority::visible;
    bool thumbnail = false;  ///< may come from the user's cache of thumbnails, and is stored there; for a whole file,
                             ///< its first image, and bounds of at most 256 x 256
};

/// The completeness of a decoded picture.
enum class PictureState : std::uint8_t {
    whole,    ///< all of it
    partial,  ///< the file is damaged: the missing part is transparent
    failed    ///< nothing: no pixels
};

/// Pixels in rows from the top, four bytes each: the 32-bit number 0xAARRGGBB in the machine's byte order, with the
/// colors multiplied by the alpha (what Qt calls ARGB32_Premultiplied). Copies share the bytes.
struct Pixels {
    PictureSize size = {};
    std::size_t stride = 0;                               ///< bytes from one row to the next, at least 4 x width
    std::shared_ptr<const std::uint8_t> bytes = nullptr;  ///< stride x height; null if there are none
};

/// The answer to a request.
struct Picture {
    Pixels pixels = {};         ///< upright: a camera's orientation (EXIF) is applied
    PictureSize original = {};  ///< of the image in the file, upright; {0, 0} if unknown
    std::size_t count = 0;      ///< frames, pages or images in the source; 0 if unknown
    bool animated = false;      ///< they are frames, to show one after another
    int delay = 0;              ///< display time of this frame in milliseconds
    int repeats = 0;            ///< runs of an animation after the first; -1: for ever
    std::string format = {};    ///< "png", "jpeg" ...; empty if unknown
    PictureState state = PictureState::failed;
    int decoded_percent = 0;  ///< of the image's rows: 100 for a whole picture, 0 for a failed one
    std::string reason = {};  ///< why it is not whole: a short phrase without a full stop, "the file is cut off"
};

/// Decodes pictures outside the interface, in processes where a hostile file can do no harm.
class Pictures {
  public:
    /// Identifies a waiting request; never 0, and never reused.
    using Ticket = std::uint64_t;
    using Ready = std::function<void(const Picture& picture)>;

    virtual ~Pictures() = default;

    /// Requests a picture and returns at once. `ready` runs once, on the interface's thread and after this call has
    /// returned: with the picture, or with the reason why there is none. It doesn't run for a cancelled request.
    virtual Ticket request(const PictureRequest& request, Ready ready) = 0;

    /// Drops a request: its `ready` no longer runs. Does nothing for an answered or unknown one.
    virtual void cancel(Ticket ticket) = 0;

    /// Changes the priority of a waiting request. Does nothing for an answered or unknown one.
    virtual void prioritise(Ticket ticket, PicturePriority priority) = 0;

    /// Returns a sentence, for the About window, on how the decoder is confined on this machine.
    virtual std::string confinement() = 0;
};

}  // namespace quill::platform
