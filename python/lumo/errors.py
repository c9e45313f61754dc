"""The one exception of the package."""

from __future__ import annotations

import enum
from collections.abc import Callable, Mapping
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


# In the order of the toolkit's codes: what to say with arguments, and without. {0} is the first
# argument, {1} the second, {all} are all of them.
_HINTS = (
    ("", ""),
    ("did you mean {all}?", ""),
    ("there are {all}", ""),
    ("check the name {0}; some names are known inside the company's network only", ""),
    ("{0} does not answer as a service layer: check the path of the address", ""),
    ("write https:// instead of http:// in {0}, with the port that serves it", ""),
    ("the port does not speak TLS: write http:// in {0}, or name the port for https", ""),
    ("something in front of the server sends you to {0}; connect to the service layer itself", ""),
    (
        "{0} does not hold the server's authority; give your company's certificates as ca_file=",
        "give the certificates of your company's authority as ca_file=",
    ),
    ("check {0}: it cannot be read, or is not in PEM form", ""),
    ("have the administrators of {0} renew its certificate, or correct the date here", ""),
    ("connect by one of the names in the certificate instead of {0}", ""),
    ("the server does not take {0}; give another as certificate_file=",
     "give certificate_file= and key_file="),
    ("nothing answers at {0}: check host and port, and whether a firewall is in between", ""),
    ("no proxy answers at {0}: correct {1}, or list the server in no_proxy", ""),
    ("log on to the proxy {0} with proxy_user= and proxy_password=", ""),
    ("ask the administrators of the proxy {0} to let calls to {1} through", ""),
    ('give user= and password=, or auth="ticket"; the server offers {all}',
     'give user= and password=, or auth="ticket"'),
    ("give the password of {0} as password=, or its file in LUMO_PASSWORD_FILE", ""),
    ("give lumo.connect a URL, or set LUMO_URL; lumo.sandbox() starts a server of your own",
     "give lumo.connect a URL, or set LUMO_URL; lumo.sandbox() starts a server of your own"),
    ("check user, domain and password of {0}", "check user=, domain= and password="),
    ('NTLM does not work with this password of {0}; log on with auth="ticket"', ""),
    ("get a ticket with kinit; klist shows which there are",
     "get a ticket with kinit; klist shows which there are"),
    ("the realm has no service at {0}: connect by the server's full name", ""),
    ("have /etc/krb5.conf name the servers of the realm",
     "have /etc/krb5.conf name the servers of the realm"),
    ("set the clock of this machine, which is {0} s fast", "set the clock of this machine"),
    ("the server does not take the ticket: look with klist, get another one with kinit",
     "the server does not take the ticket: look with klist, get another one with kinit"),
    ("ask the server's administrators for rights of {0}", "log on with user= or auth="),
    ("try again in {0} s", ""),
    ("try again in a while", "try again in a while"),
    ("try again later, or with a longer stall_timeout= than {0}", ""),
    ("ask for less at once, with a smaller chunk_size=",
     "ask for less at once, with a smaller chunk_size="),
    ("give another base of namespaces than {0} as namespace=", ""),
    ('give namespace="{0}"', ""),
    ("the server speaks version {0}, and this package another one", ""),
    ("see whether the change has happened before you repeat it",
     "see whether the change has happened before you repeat it"),
    ("name each by itself: {all}", ""),
)  # fmt: skip


def _hint(code: int, arguments: list[str]) -> str:
    words, bare = _HINTS[code] if 0 <= code < len(_HINTS) else ("", "")
    given = [one for one in arguments if one]
    if not given:
        return bare
    shown = ", ".join(given[:8]) + (", ..." if len(given) > 8 else "")
    second = given[1] if len(given) > 1 else "proxy="
    return words.replace("{0}", given[0]).replace("{1}", second).replace("{all}", shown)


class Attempt(NamedTuple):
    """One try of a call that was repeated."""

    number: int  #: counted from 1
    code: ErrorCode  #: what kind of failure it was
    text: str  #: what went wrong, in one line
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
        self.hint = _hint(
            self._details.get("hint_code", 0), self._details.get("hint_arguments", [])
        )
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
    def offered_log_ons(self) -> list[str]:
        """The methods that a server offers where it wants a log-on."""
        return list(self._details.get("offered_log_ons", []))

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
        return [
            Attempt(number, ErrorCode(code), text, after) for number, code, text, after in tries
        ]

    @property
    def is_retryable(self) -> bool:
        """Whether a read that failed so may succeed when it is repeated."""
        return bool(self._details.get("is_retryable", False))


def is_found(name: object, look_up: Callable[[str], object], *others: ErrorCode) -> bool:
    """Whether the look-up finds that name, and not several things. Its errors come out, but for
    those that say so, of which it may have others."""
    if not isinstance(name, str):
        return False
    try:
        look_up(name)
    except Error as error:
        if error.code not in (ErrorCode.NOT_FOUND, ErrorCode.AMBIGUOUS, *others):
            raise
        return False
    return True
