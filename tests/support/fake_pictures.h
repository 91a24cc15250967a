#pragma once

#include "platform/pictures.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace quill::tests {

/// Pictures from a table instead of a decoder. Requests wait until the test has them answered, visible ones first; a
/// picture missing from the table fails with a reason, like an unreadable file.
class FakePictures final : public platform::Pictures {
  public:
    /// A waiting request.
    struct Waiting {
        Ticket ticket = 0;
        platform::PictureRequest request;
        Ready ready;
    };

    /// Answers requests for `path`, from `offset` in it, with image `index` by `picture`.
    void set(std::string path, platform::Picture picture, std::uint64_t offset = 0, std::size_t index = 0);

    /// Answers the first of the most urgent requests; returns false if none is waiting.
    bool answer_one();
    /// Answers all waiting requests, and those made meanwhile; returns their number.
    std::size_t answer_all();

    std::vector<Waiting> waiting;               ///< in the order of their requests
    std::vector<platform::PictureRequest> log;  ///< every request made
    std::size_t cancelled = 0;                  ///< requests dropped while they waited
    std::string sentence_on_confinement = "Pictures are decoded in a sandbox.";

    Ticket request(const platform::PictureRequest& request, Ready ready) override;
    void cancel(Ticket ticket) override;
    void prioritise(Ticket ticket, platform::PicturePriority priority) override;
    std::string confinement() override { return sentence_on_confinement; }

  private:
    using Key = std::tuple<std::string, std::uint64_t, std::size_t>;

    std::vector<Waiting>::iterator find(Ticket ticket);
    platform::Picture answer(const platform::PictureRequest& request) const;

    std::map<Key, platform::Picture> table_;
    Ticket last_ticket_ = 0;
};

/// Returns a whole picture of one color (0xAARRGGBB).
platform::Picture plain_picture(int width, int height, std::uint32_t color);

}  // namespace quill::tests
