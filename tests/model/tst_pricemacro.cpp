#include "support/loglines.h"

#include <ZNTAds/ZNTTrackInfo.h>

#include <openssl/evp.h>

class tst_pricemacro : public QObject
{
    Q_OBJECT

private slots:
    // Each from the openssl program, with the key's bytes in hexadecimal, zeros at the end:
    // printf %s 1.23 | openssl enc -aes-128-ecb -K 64656d6f5f6165735f70776400000000 -a -A
    void knownAnswers()
    {
        const QList<QPair<QString, QString>> answers{{"", "y4AaoN15y7LvTEBPteQXpg=="},
            {"1.23", "+c6cPkBl5cJG+wGIMwiA7A=="}, {"123456789012345", "abq0C7ou9mhsJoDuuxp7Wg=="},
            {"1234567890123456", "6RUrKZ+wR1ymqlG7MSEhj8uAGqDdecuy70xAT7XkF6Y="},
            {"价格", "0oN+XN+Wbjgxwu8M68JdNQ=="}};
        for (const auto &[plain, cipher] : answers)
            QCOMPARE(ZNTTrackInfo::aesEncrypt(plain, "demo_aes_pwd"), cipher);
        // Of a longer key, the first 16 bytes.
        QCOMPARE(
            ZNTTrackInfo::aesEncrypt("1.23", "0123456789abcdefXYZ"), "6/1bDH55/yV53WFRzSOstA==");
    }

    void fillsTheMacro()
    {
        znt::test::LogLines log;
        QCOMPARE(ZNTTrackInfo::encryptPriceMacro({}, "1.23"), QStringList());
        QCOMPARE(log.take(), QStringList{"INFO Starting price macro encryption for 0 URLs"});

        const QStringList urls{
            "http://a/?p=${AUCTION_PRICE}&q=${AUCTION_PRICE}", "http://b/?p=${auction_price}%1"};
        const QStringList filled{
            "http://a/?p=+c6cPkBl5cJG+wGIMwiA7A==&q=+c6cPkBl5cJG+wGIMwiA7A==", urls.last()};
        QCOMPARE(ZNTTrackInfo::encryptPriceMacro(urls, "1.23"), filled);
        QCOMPARE(log.take(),
            (QStringList{"INFO Starting price macro encryption for 2 URLs",
                "INFO AES encryption successful",
                "INFO Processed URL with encrypted price: " + filled.first(),
                "INFO AES encryption successful",
                "INFO Processed URL with encrypted price: " + filled.last()}));
    }

    void failingCipherGivesPlainPrice()
    {
        // Without a provider that is certified, OpenSSL then has no cipher.
        QVERIFY(EVP_default_properties_enable_fips(nullptr, 1));
        znt::test::LogLines log;
        const QStringList filled =
            ZNTTrackInfo::encryptPriceMacro({"http://a/?p=${AUCTION_PRICE}"}, "1.23");
        EVP_default_properties_enable_fips(nullptr, 0);
        QCOMPARE(filled, QStringList{"http://a/?p=1.23"});
        QVERIFY(log.take().contains("ERROR AES encryption failed"));
    }
};

QTEST_APPLESS_MAIN(tst_pricemacro)
#include "tst_pricemacro.moc"
