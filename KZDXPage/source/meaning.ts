// What values of the plan mean, in words.

import type { WrittenMeaning } from "./contract";
import { word, wordOfValue } from "./texts";
import { dateText, hoursText, percentText } from "./time";

// "Dig (UID 4)", or "task 4" where it has no name.
function targetText(kind: string, uid: string, name: string): string {
    return name === "" ? `${wordOfValue("target", kind)} ${uid}` : `${name} (UID\u00a0${uid})`;
}

function valueText({ work, percentage, constraint, date, target }: WrittenMeaning): string {
    if (work !== undefined) return hoursText(work);
    if (percentage !== undefined) return percentText(percentage / 100, 2);
    if (constraint !== undefined) return wordOfValue("constraint", String(constraint));
    if (date !== undefined) return dateText(date);
    return target ? targetText(...target) : "";
}

export function meaningText(meaning: WrittenMeaning): string {
    const value = valueText(meaning);
    if (!meaning.link) return value;
    const [uid, name] = meaning.link;
    return word("onLink", { value, task: targetText("task", uid, name) });
}
