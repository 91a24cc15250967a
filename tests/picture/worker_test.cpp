#include "support/temporary_directory.h"
#include "worker/worker_process.h"

#include <QBuffer>
#include <QImage>
#include <gtest/gtest.h>

#include <fstream>
#include <poll.h>
#include <variant>

namespace quill::picture {
namespace {

using platform::PictureState;
using worker::WorkerProcess;

/// The real worker, used directly.
class WorkerTest : public ::testing::Test {
  protected:
    WorkerTest() {
        Result<WorkerProcess> started = WorkerProcess::start(QUILL_PICTURE_PROGRAM);
        EXPECT_TRUE(started.ok());
        if (started) process.emplace(*std::move(started));
    }

    /// Waits for the next message.
    auto next() {
        pollfd line{process->line(), POLLIN, 0};
        poll(&line, 1, 30'000);
        return process->receive();
    }

    worker::Hello hello() {
        const auto message = next();
        const auto* said = std::get_if<worker::Hello>(&message);
        EXPECT_NE(said, nullptr);
        return said != nullptr ? *said : worker::Hello();
    }

    platform::Picture decode(const platform::PictureSource& source) {
        const Result<worker::OpenSource> open = worker::open_source(source);
        if (!open) return worker::failed_picture(open.error().text);
        worker::Request request;
        request.id = ++last;
        request.offset = open->offset;
        request.length = open->length;
        EXPECT_TRUE(process->send(request, open->file.get()));
        const auto message = next();
        const auto* reply = std::get_if<WorkerProcess::Reply>(&message);
        EXPECT_TRUE(reply != nullptr && reply->id == last);
        return reply != nullptr ? reply->picture : worker::failed_picture("the worker has ended");
    }

    static std::string png(int width, int height) {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(0xFF336699);
        QBuffer buffer;
        image.save(&buffer, "png");
        return buffer.data().toStdString();
    }

    tests::TemporaryDirectory here;
    std::optional<WorkerProcess> process;
    std::uint64_t last = 0;
};

TEST_F(WorkerTest, ShutsItselfInBeforeItTakesAPicture) {
    hello();
    std::ifstream file("/proc/" + std::to_string(process->process()) + "/status");
    const std::string status{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(status.find("NoNewPrivs:\t1\n"), std::string::npos) << status;
    EXPECT_NE(status.find("Seccomp:\t2\n"), std::string::npos);
}

TEST_F(WorkerTest, DecodesAFileARangeOfOneAndBytes) {
    hello();
    const std::string bytes = png(30, 20);
    platform::PictureSource memory;
    memory.bytes = std::make_shared<std::string>(bytes);
    const platform::PictureSource sources[] = {
        {here.write("a.png", bytes)},
        {here.write("album", std::string(5000, 'x') + bytes + std::string(77, 'x')), 5000, bytes.size()},
        memory,
    };
    for (const platform::PictureSource& source : sources) {
        const platform::Picture picture = decode(source);
        EXPECT_EQ(picture.state, PictureState::whole) << picture.reason;
        ASSERT_EQ(picture.pixels.size, (platform::PictureSize{30, 20}));
        EXPECT_EQ(*reinterpret_cast<const std::uint32_t*>(picture.pixels.bytes.get()), 0xFF336699);
    }
}

TEST_F(WorkerTest, BadPicturesFailWithAReasonAndItGoesOn) {
    hello();
    const std::string bytes = png(30, 20);
    const std::string cases[] = {"", "no picture", bytes.substr(0, 40)};
    for (const std::string& each : cases) {
        const platform::Picture picture = decode({here.write("bad.png", each)});
        EXPECT_EQ(picture.state, PictureState::failed);
        EXPECT_FALSE(picture.reason.empty());
    }
    EXPECT_EQ(decode({here.path("nowhere")}).state, PictureState::failed);
    EXPECT_EQ(decode({here.write("good.png", bytes)}).state, PictureState::whole);
}

}  // namespace
}  // namespace quill::picture
