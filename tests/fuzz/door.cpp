// Has libFuzzer enter the door, or the files and folders that are named, once each.
#include "door.h"

#include "support/test.h"

#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTLogManager.h>

#include <QDirIterator>
#include <QNetworkProxy>

#include <cstdlib>

#include <unistd.h>

namespace {

void begin()
{
    static int count = 1;
    static char name[] = "fuzz";
    static char *arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    new QGuiApplication(count, arguments);
    QCoreApplication::setOrganizationName("ZNTAds fuzzing");
    // Nothing leaves this machine: whatever address the bytes name, the proxy refuses it.
    QNetworkProxy::setApplicationProxy({QNetworkProxy::HttpProxy, "127.0.0.1", 1});
    ZNTAdsSDK::setLogEnabled(false);
    ZNTLogManager::sharedInstance()->setErrorReportsEnabled(false);
    ZNTAdsSDK::setUrlOpener([](const QUrl &) { return true; });
}

} // namespace

#ifdef ZNTADS_FUZZ
extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    begin();
    std::atexit([] { _exit(0); }); // threads are at work, and the fuzzer waits for none
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const char *data, std::size_t size)
{
    enter(QByteArray(data, qsizetype(size)));
    if (static int entered = 0; ++entered % 64 == 0)
        QCoreApplication::processEvents();
    return 0;
}
#else
int main(int argc, char **argv)
{
    begin();
    int entered = 0;
    for (int i = 1; i < argc; ++i) {
        QDirIterator files(argv[i], QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            enter(znt::test::contents(files.next()));
            ++entered;
        }
    }
    qInfo("%d inputs", entered);
    delete qApp;
    return entered > 0 ? 0 : 1;
}
#endif
