#pragma once

#include <QDBusVirtualObject>

#include <functional>
#include <string>
#include <vector>

/// One program for several starts: the first owns a name on the session bus, and later ones hand their files to it by
/// the interface org.freedesktop.Application (Desktop Entry Specification, "D-Bus Activation").
namespace quill::desktop {

/// What the running program offers to later starts.
struct Reception {
    std::function<bool()> is_free;                                     ///< a file may be shown in its window
    std::function<void(const std::string& command_line)> start_again;  ///< follows it in its window
    std::function<void()> raise;                                       ///< brings its windows to the front
    std::function<void(const std::string& argument)> start_apart;      ///< starts another process on it
};

/// Answers the calls of later starts and of the desktop's launcher.
class RunningInstance final : public QDBusVirtualObject {
  public:
    /// Takes the program's name on the session bus, or queues for it.
    explicit RunningInstance(Reception reception);
    ~RunningInstance() override;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

  private:
    struct Call {
        const char* name;
        const char* signature;
        void (RunningInstance::*answer)(const QDBusMessage& message, const QDBusConnection& bus);
    };

    static const Call* call_named(const QString& name);
    void activate(const QDBusMessage& message, const QDBusConnection& bus);
    void activate_action(const QDBusMessage& message, const QDBusConnection& bus);
    void open(const QDBusMessage& message, const QDBusConnection& bus);
    void follow(const std::vector<std::string>& arguments);

    Reception reception_;
};

/// Returns true if `arguments` are only files and directories that exist, or if there are none.
bool names_only_files(const std::vector<std::string>& arguments);

/// Hands `arguments` to the program that is already running. Returns false if the caller must show them itself: nothing
/// is running, it is busy or shows something else, it doesn't answer soon, or there is no session bus.
///
/// REQUIRES: `names_only_files(arguments)`; there is a session bus (`find_session_bus`), as for RunningInstance.
bool hand_over(const std::vector<std::string>& arguments);

/// Starts a process that follows `argument` in a window of its own.
void start_apart(const std::string& argument);

}  // namespace quill::desktop
