"""The progress bar of reads, which shows itself where somebody looks on."""

from __future__ import annotations

import sys
from collections.abc import Mapping
from typing import Any

from . import _core

_DELAY = 1.0  # seconds that a read may take without a bar


def _is_watched() -> bool:
    if "ipykernel" in sys.modules:
        return True
    return bool(sys.stderr) and sys.stderr.isatty()


class Reporter:
    """Turns `progress=` of a read into the function that the toolkit tells of each step."""

    def __init__(self, options: Mapping[str, Any]) -> None:
        self.options = dict(options)
        wish = self.options.pop("progress", None)
        self._bar: Any = None
        if callable(wish):
            self.options["on_progress"] = wish
        elif wish or (wish is None and _is_watched()):
            self._delay = 0.0 if wish else _DELAY
            self.options["on_progress"] = self._show

    def _show(self, progress: _core.Progress) -> None:
        if self._bar is None:
            try:
                from tqdm import tqdm
            except ImportError:
                return
            self._bar = tqdm(unit="records", leave=False, delay=self._delay)
        self._bar.total = progress.records_total or None
        self._bar.update(progress.records_done - self._bar.n)

    def close(self) -> None:
        if self._bar is not None:
            self._bar.close()
            self._bar = None

    def __enter__(self) -> Reporter:
        return self

    def __exit__(self, *exception: object) -> None:
        self.close()
