#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace quill::platform {

/// Where the bytes of a picture file are: in a file, in a range of a file (a picture in an album), or in memory (an
/// attachment that is not saved yet). Two sources that compare equal are the same picture.
struct PictureSource {
    std::string path = {};                               ///< absolute; ignored where `bytes` is set
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

/// Which of the waiting requests is decoded next: those seen first, then those that may be seen soon.
enum class PicturePriority : std::uint8_t {
    visible,    ///< the user looks at its place now
    nearby,     ///< a neighbour of what the user looks at
    background  ///< nobody waits for it
};

struct PictureRequest {
    PictureSource source = {};
    PictureSize bounds = {};  ///< the pixels fit in here, in the picture's proportions, and are never more than the
                              ///< picture has; {0, 0}: all pixels
    std::size_t index = 0;    ///< frame of an animation, page of a TIFF, image of an icon; from 0
    PicturePriority priority = PicturePriority::visible;
    bool thumbnail = false;  ///< may come from the user's cache of thumbnails, and is kept there; for a whole file, its
                             ///< first image, and bounds of at most 256 x 256
};

/// How much of a picture was decoded.
enum class PictureState : std::uint8_t {
    whole,    ///< all of it
    partial,  ///< the file is damaged: what could not be decoded is transparent
    failed    ///< nothing: no pixels
};

/// Pixels in rows from the top, four bytes each: the 32-bit number 0xAARRGGBB in the machine's byte order, with the
/// colors multiplied by the alpha (what Qt calls ARGB32_Premultiplied). Copies share the bytes.
struct Pixels {
    PictureSize size = {};
    std::size_t stride = 0;                               ///< bytes from one row to the next, at least 4 x width
    std::shared_ptr<const std::uint8_t> bytes = nullptr;  ///< stride x height; null where there are none
};

/// The answer to a request.
struct Picture {
    Pixels pixels = {};         ///< upright: a camera's orientation (EXIF) is applied
    PictureSize original = {};  ///< of the image in the file, upright; {0, 0} where it is not known
    std::size_t count = 0;      ///< frames, pages or images in the source; 0 where it is not known
    bool animated = false;      ///< they are frames, to be shown one after the other
    int delay = 0;              ///< milliseconds that this frame is shown
    int repeats = 0;            ///< times that an animation runs after the first; -1: for ever
    std::string format = {};    ///< "png", "jpeg" ...; empty where it is not known
    PictureState state = PictureState::failed;
    int decoded_percent = 0;  ///< of the image's rows: 100 for a whole picture, 0 for a failed one
    std::string reason =
        {};  ///< why it is partial or failed: a short phrase without a full stop, "the file is cut off"
};

/// Decoding of pictures beside the interface, in processes that a hostile file can do no harm from.
class Pictures {
  public:
    /// Names a request while it waits; never 0, and never used twice.
    using Ticket = std::uint64_t;
    using Ready = std::function<void(const Picture& picture)>;

    virtual ~Pictures() = default;

    /// Asks for a picture and returns at once. `ready` runs once, on the interface's thread and after this call has
    /// returned: with the picture, or with the reason why there is none. It doesn't run for a cancelled request.
    virtual Ticket request(const PictureRequest& request, Ready ready) = 0;

    /// Drops a request: its `ready` does not run any more. Does nothing for one that is answered or unknown.
    virtual void cancel(Ticket ticket) = 0;

    /// Changes the priority of a waiting request. Does nothing for one that is answered or unknown.
    virtual void prioritise(Ticket ticket, PicturePriority priority) = 0;

    /// Returns a sentence on how the decoder is kept apart on this machine, for the About window.
    virtual std::string confinement() = 0;
};

}  // namespace quill::platform
