// Sorting, filtering and folding: all that the page does not do by itself.
const all = (selector, top = document) => [...top.querySelectorAll(selector)];
const order = new Intl.Collator('en', {numeric: true});

/** What a cell sorts by: its number, where it has one, else its text; nothing comes last. */
const keyOf = (row, column) => {
  const cell = row.cells[column];
  return cell.dataset.v === undefined ? cell.textContent : Number(cell.dataset.v);
};
const compare = (a, b) => {
  if (a === '' || b === '') return (a === '') - (b === '');
  if (typeof a === 'number' && typeof b === 'number') return a - b;
  return order.compare(a, b);
};

/** A third click on a column gives the tree back. */
for (const table of all('#tree, #log')) {
  const body = table.tBodies[0];
  const rows = [...body.rows];
  const heads = all('thead th', table);
  heads.forEach((head, column) => {
    const button = document.createElement('button');
    button.type = 'button';
    button.append(...head.childNodes);
    head.append(button);
    button.addEventListener('click', () => {
      const next = {none: 'ascending', ascending: 'descending', descending: 'none'};
      const now = next[head.ariaSort ?? 'none'];
      for (const other of heads) other.removeAttribute('aria-sort');
      let shown = rows;
      if (now !== 'none') {
        head.ariaSort = now;
        const sign = now === 'ascending' ? 1 : -1;
        const keyed = rows.filter((row) => row.className !== 'g')
            .map((row) => ({row, key: keyOf(row, column)}));
        keyed.sort((a, b) => (a.key === '' || b.key === '' ? 1 : sign) * compare(a.key, b.key));
        shown = keyed.map(({row}) => row);
      }
      table.classList.toggle('sorted', now !== 'none');
      body.replaceChildren(...shown);
    });
  });
}

for (const form of all('form.filter')) {
  const rows = [...document.getElementById(form.dataset.of).tBodies[0].rows];
  const texts = rows.map((row) => row.textContent.toLowerCase());
  const [kind, text, count] = ['select', 'input', 'output'].map((name) => form.querySelector(name));
  const filter = () => {
    const wanted = text.value.toLowerCase();
    const kinds = kind.value.startsWith('=') ? [kind.value] : kind.value.split(' ');
    const filters = kind.value !== '' || wanted !== '';
    let found = 0;
    rows.forEach((row, i) => {
      const is = row.className === 'g' ? !filters :
          (kind.value === '' || kinds.includes(row.dataset.s ?? row.classList[0])) &&
          texts[i].includes(wanted);
      row.hidden = !is;
      if (is && row.className !== 'g') ++found;
    });
    count.value = filters ? `${found} shown` : 'all shown';
  };
  // A link to a row that is hidden shows all again.
  addEventListener('click', ({target}) => {
    const hash = target.closest('a')?.hash;
    if (!hash || !rows.some((row) => row.hidden && `#${row.id}` === hash)) return;
    form.reset();
    filter();
  });
  form.hidden = false;
  form.addEventListener('input', filter);
  form.addEventListener('submit', (event) => event.preventDefault());
}

const fold = document.getElementById('fold');
if (fold) {
  fold.hidden = false;
  fold.addEventListener('click', () => {
    const outputs = all('#runs details');
    const open = outputs.some((output) => !output.open);
    for (const output of outputs) output.open = open;
    fold.textContent = open ? 'Close all' : 'Open all';
  });
}
