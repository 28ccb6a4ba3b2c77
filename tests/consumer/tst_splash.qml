//! [qml]
import QtQuick
import QtTest
import ZNTAds
import ZNTAds.Testing

TestCase {
    id: test

    name: "Splash"
    when: windowShown
    visible: true
    width: 375
    height: 812

    TestExchange { id: exchange }
    TestClock { id: clock }
    TestHand { id: hand; window: test.Window.window }
    SplashAd { id: splash; mediaId: "my-splash"; showWhenLoaded: true }
    AdSpy { id: spy; target: splash }

    function initTestCase() {
        compare(exchange.isNotAsked(), "")
        ZNTAdsSDK.registerWithAppId("my-app", "my-media", exchange.secret)
    }

    function test_isSeenAndSkipped() {
        exchange.changeAd("my-splash", "splash", { adId: "tea" })
        splash.load()
        compare(spy.happens(AdSpy.Loaded), "")
        compare(hand.sees(TestHand.SplashAd), "")
        clock.advance(1000)
        compare(spy.hears([AdSpy.Loaded, AdSpy.Shown, AdSpy.Seen]), "")
        compare(exchange.tracks(TestExchange.View, "tea"), "")
        compare(hand.tap(TestHand.SplashAd, "skipButton"), "")
        clock.advance(1000)
        compare(spy.once(AdSpy.Closed), "")
    }
}
//! [qml]
