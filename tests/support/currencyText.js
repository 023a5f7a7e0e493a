// Prints what Intl makes of amounts of US dollars, one in a line: the locale, the decimals, the
// amount in cents and the text, parted by tabs.

const locales = [
    "ar-EG", "bg-BG", "bn-BD", "ca-ES", "cs-CZ", "da-DK", "de-AT", "de-CH", "de-DE", "el-GR",
    "en-AU", "en-CA", "en-GB", "en-IN", "en-US", "en-ZA", "es-AR", "es-ES", "es-MX", "et-EE",
    "fa-IR", "fi-FI", "fr-CA", "fr-CH", "fr-FR", "he-IL", "hi-IN", "hr-HR", "hu-HU", "id-ID",
    "it-CH", "it-IT", "ja-JP", "ko-KR", "lt-LT", "lv-LV", "mr-IN", "ms-MY", "nb-NO", "nl-NL",
    "pl-PL", "pt-BR", "pt-PT", "ro-RO", "ru-RU", "sk-SK", "sl-SI", "sr-RS", "sv-SE", "sw-KE",
    "ta-IN", "th-TH", "tr-TR", "uk-UA", "ur-PK", "vi-VN", "zh-CN", "zh-TW",
];

const amounts = [
    0, 1, 5, 49, 50, 50.5, 99, 99.5, 100, 100.5, 123450, 99999, 99950, 1234567, 123456789.5,
    100000000, 4.1666, 0.5, 1.5, 2.5, 0.49999, 31415926535.9, 9007199254740991,
];

for (const locale of locales) {
    for (const decimals of [2, 0]) {
        const format = new Intl.NumberFormat(locale, {
            style: "currency",
            currency: "USD",
            minimumFractionDigits: decimals,
            maximumFractionDigits: decimals,
        });
        for (const amount of amounts) {
            for (const cents of [amount, -amount]) {
                const exact = Object.is(cents, -0) ? "-0" : String(cents);
                console.log([locale, decimals, exact, format.format(cents / 100)].join("\t"));
            }
        }
    }
}
