"""The one exception of the package."""

from __future__ import annotations

import enum
from collections.abc import Mapping
from typing import Any, NamedTuple


class ErrorCode(enum.Enum):
    """What kind of failure an `Error` is; programs decide by it."""

    INVALID_ARGUMENT = "InvalidArgument"  #: what was asked for makes no sense; nothing was sent
    NOT_FOUND = "NotFound"  #: no such database, table, attribute, folder, record or column
    AMBIGUOUS = "Ambiguous"  #: several things have that name
    NAME_RESOLUTION = "NameResolution"  #: the server's name has no address
    CONNECTION = "Connection"  #: refused, reset or cut short: no complete reply
    TLS = "Tls"  #: certificates or the handshake
    TIMEOUT = "Timeout"  #: a phase of a call, or the whole work, took too long
    PROXY = "Proxy"  #: the way to the server through a proxy fails
    UNAUTHENTICATED = "Unauthenticated"  #: the log-on is refused (401, 407)
    PERMISSION_DENIED = "PermissionDenied"  #: logged on, and not allowed (403)
    RATE_LIMITED = "RateLimited"  #: too many calls (429)
    UNAVAILABLE = "Unavailable"  #: the server is there and cannot serve now (502, 503, 504)
    SERVER_FAULT = "ServerFault"  #: the server reports a fault, or another status of failure
    NOT_UNDERSTOOD = "NotUnderstood"  #: the reply is not an answer of a service layer
    OUTCOME_UNKNOWN = "OutcomeUnknown"  #: a change was sent and its reply was lost
    CANCELLED = "Cancelled"


# In the order of the toolkit's codes; {0} is the first argument, {all} are all of them.
_HINTS = (
    ("None", "", ""),
    ("DidYouMean", "did you mean {all}?", ""),
    ("OneOf", "there are {all}", ""),
    ("CheckName", "check the host name {0}", ""),
    ("CheckAddress", "is {0} the base address of a service layer?", ""),
    ("UseHttps", "use the address with https:// instead of {0}", ""),
    ("UseHttp", "use the address with http:// instead of {0}", ""),
    ("FollowRedirect", "connect to the address to which it sends its callers", ""),
    (
        "TrustAuthority",
        "the CA file {0} does not hold the server's authority; give another as ca_file=",
        "give the file of the company's certificates as ca_file= or in LUMO_CA_FILE",
    ),
    ("CheckFile", "check the file {0}", ""),
    ("RenewCertificate", "the certificate of {0} has to be renewed there", ""),
    ("CheckHost", "connect by a name that the certificate has instead of {0}", ""),
    ("GiveCertificate", "give certificate_file= and key_file=", ""),
    ("CheckProxy", "check the proxy {all}, or give proxy=", "check proxy="),
    ("LogOnToProxy", "the proxy {0} wants a log-on", ""),
    ("LogOn", 'give user= and password=, or auth="ticket"; the server offers {all}',
     'give user= and password=, or auth="ticket"'),
    ("GivePassword", "give password=, or LUMO_PASSWORD_FILE in the environment", ""),
    ("GiveServer", "give a URL to lumo.connect, or set LUMO_URL; lumo.sandbox() starts a server", ""),
    ("CheckPassword", "check the password of {0}", "check user= and password="),
    ("AvoidNtlm", "NTLM does not work with this password of {0}; use auth=\"ticket\"", ""),
    ("CheckTicket", "get a ticket with kinit; the ticket's library says: {0}",
     "get a ticket with kinit"),
    ("AskForRights", "ask the server's keeper for rights of {0}", "log on with user= or auth="),
    ("WaitSeconds", "try again in {0} s", ""),
    ("SendLess", "give a smaller chunk_size=", ""),
    ("LookBeforeRepeating", "see whether the change has happened before you repeat it", ""),
)


def _hint(code: int, arguments: list[str]) -> str:
    _, words, bare = _HINTS[code] if 0 <= code < len(_HINTS) else _HINTS[0]
    given = [one for one in arguments if one]
    if not given and "{" in words:
        return bare
    shown = ", ".join(given[:8]) + (", ..." if len(given) > 8 else "")
    return words.replace("{0}", given[0] if given else "").replace("{all}", shown)


class Attempt(NamedTuple):
    """One try of a call that was repeated."""

    number: int
    code: ErrorCode
    text: str
    after: float  #: seconds since the call's first try began


class Error(Exception):
    """What goes wrong in this package, beside wrong types of arguments.

    `str(error)` is one line: what happened, and what to do next. `code` says what kind of failure
    it is::

        try:
            frame = materials.to_pandas(["Density"])
        except lumo.Error as error:
            if error.code is lumo.ErrorCode.UNAUTHENTICATED: ...
    """

    def __init__(
        self, code: ErrorCode | str, text: str, details: Mapping[str, Any] | None = None
    ) -> None:
        self.code = ErrorCode(code)
        self.text = text  #: what happened, without the hint
        self._details = dict(details or {})
        #: what to do next; empty where nobody knows
        self.hint = _hint(self._details.get("hint_code", 0), self._details.get("hint_arguments", []))
        super().__init__(f"{text}; {self.hint}" if self.hint else text)

    def __reduce__(self) -> tuple[Any, ...]:
        return (type(self), (self.code, self.text, self._details))

    @property
    def operation(self) -> str:
        """Such as "GetTables"; empty when no call was made."""
        return str(self._details.get("operation", ""))

    @property
    def http_status(self) -> int:
        """Status of the reply; 0 without one."""
        return int(self._details.get("http_status", 0))

    @property
    def fault_code(self) -> str:
        """Code of a SOAP fault."""
        return str(self._details.get("fault_code", ""))

    @property
    def fault_detail(self) -> str:
        """Detail of a SOAP fault, as XML."""
        return str(self._details.get("fault_detail", ""))

    @property
    def transport_text(self) -> str:
        """Why no reply came, in the words of the libraries below."""
        return str(self._details.get("transport_text", ""))

    @property
    def body_start(self) -> str:
        """The first 2 KB of a reply that is not a service layer's."""
        return str(self._details.get("body_start", ""))

    @property
    def records_done(self) -> int:
        """How many records a read had handed over before it failed."""
        return int(self._details.get("records_done", 0))

    @property
    def names(self) -> list[str]:
        """The names that the hint gives, such as those that are alike."""
        return list(self._details.get("hint_arguments", []))

    @property
    def attempts(self) -> list[Attempt]:
        """All tries of a call that was repeated; empty for a call made once."""
        tries = self._details.get("tries", [])
        return [Attempt(number, ErrorCode(code), text, after) for number, code, text, after in tries]

    @property
    def is_retryable(self) -> bool:
        """Whether a read that failed so may succeed when it is repeated."""
        return bool(self._details.get("is_retryable", False))
