// A host application that can be scripted: shows one ad format in a real window and prints what
// happens.
#include "player.h"
#include "surroundings.h"

#include <QGuiApplication>
#include <QTimer>

#include <cstdio>

namespace {

using namespace player;

int wrong(QString message)
{
    message.replace(u'\n', u' '); // one line
    std::fprintf(stderr, "zntads-player: %s\n", qUtf8Printable(message));
    return 2;
}

CommandLine read(int argc, char *argv[])
{
    // Certificates are read with an application only. The real one must not exist yet, as the
    // command line settles what it finds around it.
    const QCoreApplication application(argc, argv);
    return readCommandLine(application.arguments());
}

int play(const Options &options, EventLog &events, int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    settleApplication(options);

    Player player(options, events);
    QTimer::singleShot(0, &player, &Player::start);
    QGuiApplication::exec();
    return player.status();
}

} // namespace

int main(int argc, char *argv[])
{
    EventLog events;
    const CommandLine line = read(argc, argv);
    switch (line.kind) {
    case CommandLine::Kind::Help:
        std::fputs(qUtf8Printable(line.text), stdout);
        return 0;
    case CommandLine::Kind::Wrong:
        return wrong(line.text);
    case CommandLine::Kind::Run:
        break;
    }
    if (!events.open(line.options.events))
        return wrong(line.options.events + u": "_s + events.errorString());
    if (!settleProcess(line.options))
        return wrong(line.options.dataDir + u": cannot be used as a folder"_s);

    const int status = play(line.options, events, argc, argv);
    events.write(u"exit"_s, {{u"status"_s, status}});
    return status;
}
