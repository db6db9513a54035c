// Amounts in the form of the document's sample, such as "$1,234.56" or "1,234.56 €".

import { locale } from "./texts";

export function moneyFormat(sample: string): (amount: number) => string {
    const parts = /^(.*?)([\d.,]*\d)(.*)$/su.exec(sample);
    const digits = parts ? /\.(\d+)$/u.exec(parts[2] ?? "")?.[1]?.length ?? 0 : 2;
    const before = parts?.[1] ?? "";
    const after = parts?.[3] ?? "";
    return (amount) =>
        before +
        amount.toLocaleString(locale, { minimumFractionDigits: digits, maximumFractionDigits: Math.max(digits, 2) }) +
        after;
}
