// Amounts in the form of the document's sample, such as "$1,234.56" or "1,234.56 €".

import { locale } from "./texts";

export function moneyFormat(sample: string): (amount: number) => string {
    const number = /[\d.,]*\d/u.exec(sample);
    const digits = number ? /\.(\d+)$/u.exec(number[0])?.[1]?.length ?? 0 : 2;
    const before = number ? sample.slice(0, number.index) : "";
    const after = number ? sample.slice(number.index + number[0].length) : "";
    return (amount) =>
        before +
        amount.toLocaleString(locale, { minimumFractionDigits: digits, maximumFractionDigits: Math.max(digits, 2) }) +
        after;
}
