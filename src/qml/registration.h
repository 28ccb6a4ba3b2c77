// The entry to the library for hosts that are written in QML.
#pragma once

#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace znt {

// See ZNTAdsSDK, which it stands for in QML.
class Registration : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(bool initialized READ isInitialized NOTIFY initializedChanged)
    Q_PROPERTY(bool testMode READ isTestMode WRITE setTestMode NOTIFY testModeChanged)
    QML_NAMED_ELEMENT(ZNTAdsSDK)
    QML_SINGLETON

public:
    QString version() const;
    bool isInitialized() const;
    bool isTestMode() const;
    void setTestMode(bool testMode);

    Q_INVOKABLE void registerWithAppId(
        const QString &appId, const QString &mediaId, const QString &secret);
    Q_INVOKABLE bool setEndpoints(const QUrl &httpsBase, const QUrl &httpBase);
    Q_INVOKABLE void setLogEnabled(bool enabled);
    // In points.
    Q_INVOKABLE void setSafeAreaInsets(double left, double top, double right, double bottom);
    Q_INVOKABLE void reportError(const QString &summary, const QString &errorDetails);

Q_SIGNALS:
    void initializedChanged();
    void testModeChanged();
};

} // namespace znt
