#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTProperty.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

/// The tracking addresses of one ad, and the encryption of the price that some of them carry.
///
/// A list is kept as the exchange sent it; elements that are no strings are passed over when it is
/// fired.
class ZNTADS_EXPORT ZNTTrackInfo
{
    /// Fired when the ad counts as seen.
    ZNT_PROPERTY(QJsonArray, viewUrl3rd, setViewUrl3rd);
    /// Fired at a click.
    ZNT_PROPERTY(QJsonArray, clickUrl3rd, setClickUrl3rd);
    /// Addresses of conversions. The library does not fire them.
    ZNT_PROPERTY(QJsonArray, conversionUrls, setConversionUrls);
    /// Fired at a click as the deep-link event.
    ZNT_PROPERTY(QJsonArray, dpEventUrls, setDpEventUrls);

public:
    /// Reads a record; a list that is missing or no list is an empty one.
    static ZNTTrackInfo initWithDictionary(const QJsonObject &dictionary);

    /// Encrypts @p plainText with AES-128 in ECB mode with PKCS7 padding and returns standard
    /// Base64 without line breaks. The cipher's key is the first 16 bytes of @p key in UTF-8; a
    /// shorter one is filled up with zero bytes. When the cipher fails, that is logged and @p
    /// plainText comes back as it is.
    ///
    /// The price "1.23" under the key "demo_aes_pwd" (64656d6f5f6165735f707764, then four zero
    /// bytes) gives "+c6cPkBl5cJG+wGIMwiA7A==", which any other party can check:
    /// @code{.sh}
    /// printf %s 1.23 | openssl enc -aes-128-ecb -K 64656d6f5f6165735f70776400000000 -a -A
    /// @endcode
    static QString aesEncrypt(const QString &plainText, const QString &key);

    /// Replaces every "${AUCTION_PRICE}" in each of @p urls by @p price, encrypted under the key
    /// "demo_aes_pwd" (see aesEncrypt()). The result is put in as it is, not escaped for a URL.
    /// Addresses without the macro stay as they are; number and order are kept.
    static QStringList encryptPriceMacro(const QStringList &urls, const QString &price);

    friend bool operator==(const ZNTTrackInfo &, const ZNTTrackInfo &) = default;

private:
    friend struct znt::Fields<ZNTTrackInfo>;
};
