// Figures and units as people read them.

const raised = {'-': '⁻', 0: '⁰', 1: '¹', 2: '²', 3: '³', 4: '⁴', 5: '⁵', 6: '⁶', 7: '⁷', 8: '⁸', 9: '⁹'};

/** At most so many digits; large and small figures with a power of ten. */
export function figure(number, digits = 5) {
  if (number === null || number === undefined || !Number.isFinite(number)) return '–';
  const size = Math.abs(number);
  if (size !== 0 && (size >= 1e6 || size < 1e-3)) {
    const [head, power] = number.toExponential(Math.max(0, digits - 1)).split('e');
    const front = Number(head) === 1 ? '' : `${Number(head)}×`.replace('-', '−');
    return `${front}10${[...String(Number(power))].map((c) => raised[c]).join('')}`;
  }
  return String(Number(number.toPrecision(digits))).replace('-', '−');
}

/** The server's symbol with raised powers: m^3 as m³. Fractions of powers stay as they are. */
export function unit(symbol) {
  return (symbol || '').replace(/\^(-?\d+)(?![.\d])/g, (all, power) => [...power].map((c) => raised[c]).join(''))
    .replace(/deg([CF])\b/g, '°$1').replace(/\b(u)(?=strain|ohm|m\b)/g, 'µ').replace(/ohm/g, 'Ω');
}

export const withUnit = (text, symbol) => (symbol ? `${text} ${unit(symbol)}` : text);

/** How texts show figures and their units: rounded and with raised digits, or as they came. */
export const forPeople = {number: figure, measure: withUnit};
export const forPrograms = {number: (one) => String(one ?? ''), measure: (text, symbol) => (symbol ? `${text} ${symbol}` : text)};

export function rangeText(low, high, digits = 5) {
  if (low === null && high === null) return 'any figure';
  if (low === null) return `≤ ${figure(high, digits)}`;
  if (high === null) return `≥ ${figure(low, digits)}`;
  return low === high ? figure(low, digits) : `${figure(low, digits)} – ${figure(high, digits)}`;
}

export const count = (number) => number.toLocaleString('en');
export const many = (number, thing) => `${count(number)} ${thing}${number === 1 ? '' : 's'}`;
