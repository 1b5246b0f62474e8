"""Orca's settings for scripts/test-accessibility: each line that it logs can be read immediately, and
it speaks to its log alone, so that no machine needs a voice.
"""

import sys

from orca import debug

debug.debugFile.reconfigure(line_buffering=True)
sys.modules["speechd"] = None
