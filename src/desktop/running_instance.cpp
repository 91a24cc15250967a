#include "desktop/running_instance.h"

#include "desktop/process.h"
#include "desktop/shown_text.h"
#include "files/directory.h"
#include "shell/command_line.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <utility>

namespace quill::desktop {
namespace {

constexpr auto bus_name = "org.quillbright.quillbright";
constexpr auto object_path = "/org/quillbright/quillbright";
constexpr auto interface_name = "org.freedesktop.Application";
constexpr auto busy = "org.quillbright.quillbright.Busy";
constexpr int longest_wait = 2000;  // milliseconds

/// The platform data of a start that shows its files itself after this time, on the monotonic clock in milliseconds.
constexpr auto waits_until = "quillbright-waits-until";
constexpr auto activation_token = "activation-token";

constexpr auto description = R"(<interface name="org.freedesktop.Application">
  <method name="Activate"><arg type="a{sv}" direction="in"/></method>
  <method name="Open"><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/></method>
  <method name="ActivateAction">
    <arg type="s" direction="in"/><arg type="av" direction="in"/><arg type="a{sv}" direction="in"/>
  </method>
</interface>
)";

/// An action of the desktop entry, and the argument of a start that does the same; pictures take a directory.
struct EntryAction {
    const char* name;
    const char* argument;
};
constexpr std::array<EntryAction, 4> entry_actions = {{
    {"decode", "/de"},
    {"new-archive", "/ue"},
    {"new-book", "/um"},
    {"pictures", nullptr},
}};

/// Returns the argument that starts the action `name`; empty for an unknown action.
std::string argument_of_action(const QString& name) {
    const auto* action = std::find_if(entry_actions.begin(), entry_actions.end(),
                                      [&](const EntryAction& each) { return name == QLatin1String(each.name); });
    if (action == entry_actions.end()) return {};
    if (action->argument != nullptr) return action->argument;
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return typed(QFileInfo(pictures).isDir() ? pictures : QDir::homePath());
}

qint64 now() {
    return QDeadlineTimer::current().deadline();
}

QVariantMap own_platform_data() {
    QVariantMap data{{QLatin1String(waits_until), now() + longest_wait}};
    if (const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN"); !token.isEmpty())
        data[QLatin1String(activation_token)] = QString::fromUtf8(token);
    return data;
}

/// Returns the platform data, the last argument of each call.
QVariantMap platform_data(const QDBusMessage& message) {
    return message.arguments().isEmpty() ? QVariantMap() : qdbus_cast<QVariantMap>(message.arguments().constLast());
}

std::vector<std::string> paths_of(const QStringList& addresses) {
    std::vector<std::string> paths;
    for (const QString& address : addresses) {
        std::string path = local_path(QUrl(address));
        if (!path.empty()) paths.push_back(std::move(path));
    }
    return paths;
}

QDBusMessage call_of(const std::vector<std::string>& paths) {
    QDBusMessage call = QDBusMessage::createMethodCall(QLatin1String(bus_name), QLatin1String(object_path),
                                                       QLatin1String(interface_name),
                                                       QLatin1String(paths.empty() ? "Activate" : "Open"));
    call.setAutoStartService(false);
    QStringList addresses;
    for (const std::string& path : paths) addresses << QString::fromLatin1(file_url(files::absolute(path)).toEncoded());
    if (!paths.empty()) call << addresses;
    return call << own_platform_data();
}

}  // namespace

RunningInstance::RunningInstance(Reception reception) : reception_(std::move(reception)) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.registerVirtualObject(QLatin1String(object_path), this)) return;
    bus.interface()->registerService(QLatin1String(bus_name), QDBusConnectionInterface::QueueService);
}

RunningInstance::~RunningInstance() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    bus.unregisterService(QLatin1String(bus_name));
    bus.unregisterObject(QLatin1String(object_path));
}

QString RunningInstance::introspect(const QString& path) const {
    return path == QLatin1String(object_path) ? QLatin1String(description) : QString();
}

bool RunningInstance::handleMessage(const QDBusMessage& message, const QDBusConnection& bus) {
    if (message.interface() != QLatin1String(interface_name)) return false;
    const Call* call = call_named(message.member());
    if (call == nullptr || message.signature() != QLatin1String(call->signature)) return false;
    if (const QString token = platform_data(message).value(QLatin1String(activation_token)).toString();
        !token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    (this->*call->answer)(message, bus);
    return true;
}

const RunningInstance::Call* RunningInstance::call_named(const QString& name) {
    static constexpr std::array<Call, 3> calls = {{
        {"Activate", "a{sv}", &RunningInstance::activate},
        {"Open", "asa{sv}", &RunningInstance::open},
        {"ActivateAction", "sava{sv}", &RunningInstance::activate_action},
    }};
    const auto* call =
        std::find_if(calls.begin(), calls.end(), [&](const Call& each) { return name == QLatin1String(each.name); });
    return call != calls.end() ? call : nullptr;
}

void RunningInstance::activate(const QDBusMessage& message, const QDBusConnection& bus) {
    bus.send(message.createReply());
    reception_.raise();
}

void RunningInstance::activate_action(const QDBusMessage& message, const QDBusConnection& bus) {
    const std::string argument = argument_of_action(message.arguments().constFirst().toString());
    if (argument.empty()) {
        bus.send(message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no such action.")));
        return;
    }
    bus.send(message.createReply());
    follow({argument});
}

/// Replies before anything is shown, since a box may then wait for the user.
void RunningInstance::open(const QDBusMessage& message, const QDBusConnection& bus) {
    const QVariantMap data = platform_data(message);
    const std::vector<std::string> paths = paths_of(message.arguments().constFirst().toStringList());
    const auto until = data.find(QLatin1String(waits_until));
    const bool shows_itself = until != data.end();
    if (shows_itself && (!reception_.is_free() || until->toLongLong() < now())) {
        bus.send(message.createErrorReply(QLatin1String(busy), QStringLiteral("The window shows something else.")));
    } else if (paths.empty()) {
        bus.send(message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("Only local files can be opened.")));
    } else {
        bus.send(message.createReply());
        follow(paths);
    }
}

/// Shows the first of `arguments` in the window if that is free, and the rest in processes of their own.
void RunningInstance::follow(const std::vector<std::string>& arguments) {
    auto next = arguments.begin();
    if (reception_.is_free()) {
        const std::string first = *next++;
        reception_.start_again(shell::command_line_of(std::vector<std::string>{first}));
        reception_.raise();
    }
    for (; next != arguments.end(); ++next) reception_.start_apart(*next);
}

bool names_only_files(const std::vector<std::string>& arguments) {
    return std::all_of(arguments.begin(), arguments.end(), files::exists);
}

bool hand_over(const std::vector<std::string>& arguments) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return false;
    return bus.call(call_of(arguments), QDBus::Block, longest_wait).type() == QDBusMessage::ReplyMessage;
}

void start_apart(const std::string& argument) {
    start_detached(typed(QCoreApplication::applicationFilePath()), {"/nw", argument}, {});
}

}  // namespace quill::desktop
