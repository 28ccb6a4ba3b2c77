#include "core/linkrule.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace znt {

namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype maxLength = 65'536;

bool isClean(const QString &link)
{
    return link.size() <= maxLength
        && std::ranges::none_of(link, [](QChar c) { return c.category() == QChar::Other_Control; });
}

// Whether a system or a browser keeps the scheme for itself.
bool isOfSystem(const QString &scheme)
{
    static const QSet<QString> schemes{// files and what is packed in them
        u"file"_s, u"qrc"_s, u"res"_s, u"resource"_s, u"asset"_s, u"assets"_s, u"content"_s,
        u"android.resource"_s, u"jar"_s, u"zip"_s, u"tar"_s, u"archive"_s, u"mhtml"_s, u"mk"_s,
        u"its"_s, u"filesystem"_s, u"blob"_s, u"data"_s, u"package"_s, u"locate"_s,
        // scripts and a browser's own pages
        u"javascript"_s, u"vbscript"_s, u"livescript"_s, u"applescript"_s, u"about"_s,
        u"view-source"_s, u"edge"_s, u"opera"_s, u"brave"_s, u"vivaldi"_s, u"wyciwyg"_s, u"cgi"_s,
        // shares and remote machines
        u"smb"_s, u"cifs"_s, u"afp"_s, u"nfs"_s, u"ftp"_s, u"ftps"_s, u"sftp"_s, u"fish"_s,
        u"ssh"_s, u"telnet"_s, u"rlogin"_s, u"tn3270"_s, u"dav"_s, u"davs"_s, u"webdav"_s,
        u"webdavs"_s, u"ldap"_s, u"ldaps"_s, u"vnc"_s, u"rdp"_s, u"obexftp"_s, u"kdeconnect"_s,
        // editors, which open files
        u"vscode"_s, u"vscode-insiders"_s, u"vscodium"_s, u"cursor"_s, u"idea"_s, u"jetbrains"_s,
        u"txmt"_s, u"mvim"_s, u"subl"_s, u"emacs"_s, u"org-protocol"_s, u"xcode"_s,
        // tools and places of a system
        u"shell"_s, u"search"_s, u"search-ms"_s, u"filenamesearch"_s, u"hcp"_s, u"help"_s,
        u"ghelp"_s, u"man"_s, u"info"_s, u"admin"_s, u"trash"_s, u"recent"_s, u"recentlyused"_s,
        u"recentdocuments"_s, u"starred"_s, u"network"_s, u"computer"_s, u"burn"_s, u"cdda"_s,
        u"mtp"_s, u"gphoto2"_s, u"afc"_s, u"settings"_s, u"control"_s, u"applications"_s,
        u"programs"_s, u"remote"_s, u"desktop"_s, u"prefs"_s, u"app-prefs"_s, u"shortcuts"_s,
        u"workflow"_s, u"timeline"_s, u"itms-services"_s, u"android-app"_s, u"apt"_s,
        u"appstream"_s, u"snap"_s, u"flatpak"_s, u"kio"_s, u"bluetooth"_s, u"fonts"_s, u"tags"_s,
        u"activities"_s, u"baloosearch"_s};
    static const QRegularExpression families(u"\\A(?:ms-|windows|x-apple|com\\.apple|x-man|x-help"
                                             "|chrome|moz-|gnome-|kde-)"_s);
    const QStringList parts = scheme.split(u'+'); // "davs+sd"
    return families.match(scheme).hasMatch()
        || std::ranges::any_of(parts, [](const QString &part) { return schemes.contains(part); });
}

// A path begins with one slash or backslash. A scheme like "com.example.app" is an application's
// own, and its links are often written so.
bool isPath(const QString &scheme, const QString &rest)
{
    static const QRegularExpression path(u"\\A(?:/(?!/)|\\\\)"_s);
    return path.match(rest).hasMatch() && (rest[0] == u'\\' || !scheme.contains(u'.'));
}

// Whether a part of the link is another link, to a file, a script or a share.
bool wrapsAnother(const QString &rest)
{
    static const QRegularExpression another(
        u"(?<![a-z0-9._-])(?:file:(?:[/\\\\]|[a-z][:|])|shell:[a-z:]"
        "|(?:jar|mhtml|javascript|vbscript|view-source|search-ms|ms-[a-z-]+):"
        "|(?:content|filesystem|blob|ftp|afp|nfs|smb):/|data:[a-z]*[/;,])"
        "|(?:^|[=:?&/\"',;( ])\\\\{2,}[\\w.@-]+[\\\\/]+[\\w$]"_s,
        QRegularExpression::CaseInsensitiveOption);
    return another.match(rest).hasMatch();
}

// Whether it holds for what follows the scheme, however often that is escaped.
template <class Condition>
bool inAnyLayer(QString rest, Condition holds)
{
    for (int layers = 0; layers < 8; ++layers) {
        if (holds(rest))
            return true;
        const QString decoded = QString::fromUtf8(QByteArray::fromPercentEncoding(rest.toUtf8()));
        if (decoded == rest)
            return false;
        rest = decoded;
    }
    return true; // nobody escapes that often without a reason
}

bool attaches(const QString &mail)
{
    return mail.contains(
        QRegularExpression(u"[?&]attach"_s, QRegularExpression::CaseInsensitiveOption));
}

// The system's own applications, but for its browser and its store.
bool isPackageOfSystem(const QString &package)
{
    return package == u"android"
        || (package.startsWith(u"com.android.") && package != u"com.android.chrome"
            && package != u"com.android.vending")
        || package.endsWith(u"packageinstaller");
}

// Android reads what follows "#Intent;" as the fields of the intent. Extras have a letter for their
// type and a point before their names.
bool viewsAnApplication(const QString &intent)
{
    const qsizetype begin = intent.lastIndexOf(u"#Intent;");
    const QStringList fields = begin < 0 ? QStringList() : intent.mid(begin + 8).split(u';');
    return std::ranges::all_of(fields, [](const QString &field) {
        const QString name = field.section(u'=', 0, 0).toLower();
        const QString value =
            QString::fromUtf8(QByteArray::fromPercentEncoding(field.section(u'=', 1).toUtf8()));
        if (name == u"scheme")
            return !isOfSystem(value.toLower());
        if (name == u"action")
            return value == u"android.intent.action.VIEW";
        if (name == u"package")
            return !isPackageOfSystem(value.toLower());
        return name.isEmpty() || name == u"end" || name == u"category" || name == u"launchflags"
            || name.indexOf(u'.') == 1;
    });
}

} // namespace

QString schemeOf(const QString &link)
{
    static const QRegularExpression scheme(
        u"\\A([a-z][a-z0-9+._-]+):"_s, QRegularExpression::CaseInsensitiveOption);
    return scheme.match(link).captured(1).toLower();
}

bool mayBeOpened(const QString &link)
{
    const QString scheme = schemeOf(link);
    const QString rest = link.mid(scheme.size() + 1);
    if (scheme.isEmpty() || !isClean(link))
        return false;
    if (scheme == u"http" || scheme == u"https")
        return rest.size() > 2 && rest.startsWith(u"//") && rest[2] != u'/';
    const auto isRefused = [&scheme](const QString &layer) {
        return isPath(scheme, layer) || wrapsAnother(layer)
            || (scheme == u"mailto" && attaches(layer));
    };
    return !isOfSystem(scheme) && !inAnyLayer(rest, isRefused)
        && (scheme != u"intent" || viewsAnApplication(rest));
}

} // namespace znt
