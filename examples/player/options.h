// What the command line asks for.
#pragma once

#include "action.h"

#include <QJsonObject>
#include <QSize>
#include <QSslCertificate>
#include <QUrl>
#include <QVariant>

namespace player {

using namespace Qt::StringLiterals;

enum class Format { Splash, Interstitial, Feed, Tour, Studio, Preview };
enum class UrlOpening { Ok, Fail, FailDeeplink, Desktop };

struct Options
{
    Format format = Format::Splash;
    QUrl exchange;
    QUrl logUpload;
    QList<QSslCertificate> authorities;
    QString appId = u"demo-app"_s;
    QString mediaId = u"demo-media"_s;
    QString secret = u"demo-secret"_s;
    QList<std::pair<QString, QVariant>> defaults;
    std::optional<QJsonObject> answer;
    QString answerFile;
    bool registers = true;
    std::optional<QString> position;
    bool hasPosition = true;
    std::optional<bool> testMode;
    std::optional<bool> log;
    std::optional<double> exposureRatio;
    QSize size{375, 812};
    QString dataDir;
    std::optional<UrlOpening> urlOpening;
    QString events = u"-"_s;
    std::optional<double> duration; // 60 where there has to be one
    qint64 style = 0;
    QString video;
    std::optional<double> bottomView;
    bool shows = true;
    double autoClose = 0;
    qint64 count = 9;
    QSizeF templateSize{375, 200};
    double linger = 2;
    QString screenshots = u"screenshots"_s;
    QList<QSize> sizes{{320, 568}, {375, 812}, {812, 375}};
    QList<double> scales{1};
    QString out;
    QList<Action> actions;

    // The format's name, as position id and in the window's title.
    QString formatName() const;
    // What the manager's mediaId is set to; null when it stays unset.
    QString positionId() const;
};

struct CommandLine
{
    enum class Kind { Run, Help, Wrong };

    Kind kind = Kind::Wrong;
    Options options; // of Run
    QString text;    // of Help: all of it; of Wrong: what is off
};

CommandLine readCommandLine(const QStringList &arguments);

} // namespace player
