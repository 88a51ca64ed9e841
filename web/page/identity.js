// @ts-check
// What this browser keeps: the key that lets it in, and the token by which the receiver knows it again.

const keyName = "lumbrine.key";
const tokenName = "lumbrine.token";

/** The key of the code that was scanned, which stands behind the # of the page's address; "" without one. */
export function pairingKey() {
    const scanned = location.hash.slice(1);
    if (/^[A-Za-z0-9]{26}$/.test(scanned)) {
        localStorage.setItem(keyName, scanned);
        return scanned;
    }
    const kept = localStorage.getItem(keyName) ?? "";
    // A page on the home screen may have a store of its own: what it has of this one is the address.
    if (kept) history.replaceState(null, "", "#" + kept);
    return kept;
}

/** Calls `act` when another code was scanned: the address stays the same but for the key. @param {() => void} act */
export const onOtherKey = (act) => addEventListener("hashchange", act);

/** A random number other than 0, the same each time. */
export function deviceToken() {
    const kept = localStorage.getItem(tokenName) ?? "";
    if (/^[1-9]\d*$/.test(kept)) return BigInt.asUintN(64, BigInt(kept));
    const token = crypto.getRandomValues(new BigUint64Array(1))[0] | 1n;
    localStorage.setItem(tokenName, token.toString());
    return token;
}
