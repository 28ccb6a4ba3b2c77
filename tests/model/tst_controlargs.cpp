#include "support/loglines.h"

#include <ZNTAds/ZNTFreqCtrlArg.h>
#include <ZNTAds/ZNTInteractionCtrlArg.h>

using namespace znt::test;

class tst_controlargs : public QObject
{
    Q_OBJECT

private slots:
    void frequency()
    {
        LogLines log;
        const QJsonObject full =
            json(R"({"reqDaily": 1, "expDaily": 2, "clkDaily": 3, "reqHouly": 4,
            "expHouly": 5, "clkHouly": 6, "expInterval": -7})");
        const auto arg = ZNTFreqCtrlArg::initWithDictionary(full);
        QCOMPARE(arg->expHouly(), 5);
        QCOMPARE(arg->toDictionary(), full);
        QCOMPARE(log.take(),
            (QStringList{"INFO Initialized ZNTFreqCtrlArg with values - reqDaily: 1, expDaily: 2, "
                         "clkDaily: 3, reqHouly: 4, expHouly: 5, clkHouly: 6, expInterval: -7",
                "INFO Converted ZNTFreqCtrlArg to dictionary"}));

        // The hourly keys are spelled without r.
        QCOMPARE(ZNTFreqCtrlArg::initWithDictionary(json(R"({"reqHourly": 9})")), ZNTFreqCtrlArg());
        QVERIFY(log.take().contains("INFO Initialized ZNTFreqCtrlArg with default values"));
        QCOMPARE(ZNTFreqCtrlArg::initWithDictionary(QJsonArray()), std::nullopt);
        QCOMPARE(log.take(),
            QStringList{"ERROR Failed to initialize ZNTFreqCtrlArg: invalid dictionary"});
    }

    void gestureWindow()
    {
        QCOMPARE(ZNTShakeSlopArg().toDictionary(),
            json(R"({"startHour": 0, "endHour": 24, "sensitivity": 2})"));
        const auto read = ZNTShakeSlopArg::initWithDictionary(json(R"({"startHour": "8"})"));
        QCOMPARE(read.toDictionary(), json(R"({"startHour": 8, "endHour": 0, "sensitivity": 0})"));
    }

    void interaction()
    {
        LogLines log;
        const QJsonObject full = json(R"({"adType": 1, "supportSelfRender": 2, "canSkip": 3,
            "skipType": 4, "canClose": 5, "closeType": 6, "closeBtnPos": 7, "autoPlay": 8,
            "clickTriggerType": 9, "clickArea": 10,
            "shakeArgs": [{"startHour": 8, "endHour": 22, "sensitivity": 1}],
            "slopArgs": [{"startHour": 0, "endHour": 0, "sensitivity": 0}]})");
        const auto arg = ZNTInteractionCtrlArg::initWithDictionary(full);
        QCOMPARE(arg->toDictionary(), full);
        log.take();
        QCOMPARE(ZNTInteractionCtrlArg::initWithDictionary("{}"), std::nullopt);
        QCOMPARE(log.take(),
            QStringList{"ERROR Failed to initialize ZNTInteractionCtrlArg: invalid dictionary"});
    }

    void missingLists()
    {
        const ZNTInteractionCtrlArg plain;
        LogLines log;
        for (const auto &[lists, line] :
            {std::pair(R"({"shakeArgs": [], "slopArgs": []})", "INFO Processing 0 slop arguments"),
                {R"({"shakeArgs": 1, "slopArgs": {}})",
                    "INFO No slop arguments found, using empty array"}}) {
            const auto arg = ZNTInteractionCtrlArg::initWithDictionary(json(lists));
            QCOMPARE(log.take().mid(1),
                QStringList(
                    {"INFO No shake arguments found, creating default shake argument", line}));
            QCOMPARE(arg, plain);
            QCOMPARE(arg->shakeArgs(), QList{ZNTShakeSlopArg::initWithDictionary({})});
        }

        const auto odd =
            ZNTInteractionCtrlArg::initWithDictionary(json(R"({"shakeArgs": [null, "x"]})"));
        QCOMPARE(odd->shakeArgs().size(), 2);
    }

    void firstShakeWindow()
    {
        ZNTInteractionCtrlArg arg;
        LogLines log;
        arg.setShakeArgs({ZNTShakeSlopArg(), ZNTShakeSlopArg()});
        arg.setShakeStartHour(4294967296 + 6);
        arg.setShakeEndHour(7);
        arg.setShakeSensitivity(8);
        QCOMPARE(arg.shakeArgs().first().toDictionary(),
            json(R"({"startHour": 6, "endHour": 7, "sensitivity": 8})"));
        QCOMPARE(arg.shakeArgs().last(), ZNTShakeSlopArg());
        QCOMPARE(log.take(),
            (QStringList{"INFO Set shake start hour to: 4294967302",
                "INFO Set shake end hour to: 7", "INFO Set shake sensitivity to: 8"}));

        arg.setShakeArgs({});
        arg.setShakeSensitivity(3);
        QCOMPARE(arg.shakeSensitivity(), 0);
        QVERIFY(arg.shakeArgs().isEmpty());
        QCOMPARE(log.take(),
            (QStringList{"WARNING Cannot set shake sensitivity: no shake arguments available",
                "WARNING No shake arguments available, returning default sensitivity: 0"}));
    }
};

QTEST_APPLESS_MAIN(tst_controlargs)
#include "tst_controlargs.moc"
