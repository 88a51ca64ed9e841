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
    return localStorage.getItem(keyName) ?? "";
}

/** A random number other than 0, the same each time. */
export function deviceToken() {
    const kept = localStorage.getItem(tokenName) ?? "";
    if (/^[1-9]\d*$/.test(kept)) return BigInt.asUintN(64, BigInt(kept));
    const token = crypto.getRandomValues(new BigUint64Array(1))[0] | 1n;
    localStorage.setItem(tokenName, token.toString());
    return token;
}
