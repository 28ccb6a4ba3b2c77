#include "core/urlopener.h"
#include "support/test.h"

#include <QDesktopServices>

using namespace znt;
using namespace znt::test;

class TestUrlOpener : public QObject
{
    Q_OBJECT

public slots:
    void handle(const QUrl &url) { m_handled.append(url); }

private slots:
    void init()
    {
        failOnWarnings();
        setLinkOpener([this](const QString &link, const auto &done) {
            m_opened.append(link);
            done(true);
        });
    }

    void cleanup()
    {
        setLinkOpener({});
        setUrlOpener({});
        m_opened.clear();
    }

    void applicationsAndTheWebAreReachedAsWritten()
    {
        const QStringList links{"http://localhost", "HTTPS://Example.com/a?u=file:///x&p=50%",
            "acme://21", "acme:21", "app3://goHome", "my_app://x", "acme://a host/x", "weixin://dl",
            "acme://open?url=https%3A%2F%2Fx%2F%3Fa%3Db&t=profile:1", "tel:+86 10", "sms:1?body=hi",
            "mailto:a@b.example?subject=x", "geo:1,2", "market://details?id=com.example",
            "alipays://platformapi/startapp?appId=1", "acme://content:8080/data:1",
            "acme:", "weixin://", "weixin://pay?attach=1", "acme://h?type=file:1&attachment_id=5",
            "com.example.app:/oauth2redirect",
            "acme://v?p={\"a\":\"{\\\\\\\"b\\\\\\\":\\\\\\\"c\\\\\\\"}\"}",
            "acme://v?u=https:\\\\/\\\\/x", "intent://a#Intent;package=com.android.vending;end",
            "intent://scan/#Intent;scheme=acme;package=com.example;end",
            "intent://x.example/#Intent;scheme=https;action=android.intent.action.VIEW;end",
            "intent://x/#Intent;scheme=acme;S.browser_fallback_url=https%3A%2F%2Fx;end"};
        for (const QString &link : links)
            QVERIFY2(opens(link), qPrintable(link));
        QCOMPARE(m_opened, links);
    }

    void nothingOfTheSystemIsReached()
    {
        for (const char *link : {"", "acme", "://x", "c:/windows", "acme:/etc", "acme:\\\\host",
                 "http:", "http://", "http:///x", " https://x", "acme:%2Fetc", "moz-icon:///etc/x",
                 "vscode://file/etc/passwd", "windowsdefender://x", "apt:pkg", "1a://x",
                 "acme://a\nb", "file:///etc/passwd", "FILE://x/y", "jar:file:///a!/b", "jar://x",
                 "mhtml:http://x", "feed:file:///x", "feed://file:///x", "vbscript:x",
                 "javascript://x%0aalert(1)", "data:text/html,x", "data://x", "admin:/etc",
                 "admin:///etc", "ms-msdt:/id", "ms-msdt://x", "search-ms:query=x", "search-ms://x",
                 "smb://host/share", "shell:startup", "shell://x", "view-source:http://x",
                 "view-source://x", "x-apple.systempreferences:x", "prefs://root=x", "ssh://host",
                 "git+ssh://host", "qrc:/x", "content://x", "fi%6ce:///x", "acme://?u=file:///x",
                 "acme://?u=file%3A%2F%2F%2Fx", "acme://?u=%2566ile%253A///x",
                 "acme://?u=java%73cript:x", "acme://?u=\\\\host\\share",
                 "acme://?u=git+file:///etc/passwd", "acme://?u=file:c:/x",
                 "acme://?p={\"u\":\"\\\\\\\\host\\\\share\"}", "acme://?u=%5C%5C192.0.2.1%5Cx",
                 "mailto:a@b.example?subject=x&attach=/etc/passwd", "tel:file:///x",
                 "intent:///x#Intent;scheme=file;end", "intent://x#Intent;scheme=fi%6Ce;end",
                 "intent:#Intent;package=com.android.settings;end",
                 "intent://x#Intent;type=application/vnd.android.package-archive;end",
                 "intent:#Intent;component=a/b;end", "intent://x#Intent;component=a/b;end",
                 "intent://x#Intent;SEL;scheme=acme;end",
                 "intent://x#Intent;action=android.settings.SETTINGS;end",
                 "intent://x#Intent;S.u=file%3A%2F%2F%2Fx;end"})
            QVERIFY2(!opens(link), link);
        QVERIFY(!opens("acme://" + QString(70'000, 'x')));
        QVERIFY(!opens("acme://x%" + QString("25").repeated(10'000)));
        QCOMPARE(m_opened, QStringList());
    }

    void theHostsOpeners()
    {
        QList<QUrl> urls;
        setUrlOpener([&urls](const QUrl &url) {
            urls.append(url);
            return url.host() == "yes";
        });
        QVERIFY(opens("acme://x"));
        QVERIFY(urls.isEmpty()); // the other goes first

        std::function<void(bool)> pending;
        setLinkOpener([&pending](const QString &, const auto &done) { pending = done; });
        QList<bool> told;
        openLink("acme://x", [&told](bool opened) { told.append(opened); });
        QVERIFY(told.isEmpty());
        pending(false);
        pending(true);
        QCOMPARE(told, QList<bool>{false});

        setLinkOpener({});
        QVERIFY(opens("acme://yes") && !opens("acme://no") && !opens("my_app://yes"));
        QCOMPARE(urls.size(), 2);
    }

    void handlersOfQtAreCalled()
    {
        setLinkOpener({});
        QDesktopServices::setUrlHandler("acme", this, "handle");
        QVERIFY(opens("acme://x"));
        QDesktopServices::unsetUrlHandler("acme");
        QCOMPARE(m_handled, QList<QUrl>{QUrl("acme://x")});
    }

private:
    bool opens(const QString &link)
    {
        std::optional<bool> result;
        openLink(link, [&result](bool opened) { result = opened; });
        return QTest::qWaitFor([&result] { return result.has_value(); }) && *result;
    }

    QStringList m_opened;
    QList<QUrl> m_handled;
};

QTEST_MAIN(TestUrlOpener)
#include "tst_urlopener.moc"
