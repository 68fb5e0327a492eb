"""A Slurm cluster of one node on this machine, with ports, keys and folders of its own."""

import ctypes
import os
import shutil
import signal
import socket
import subprocess
import time

NEEDED = ("munged", "slurmctld", "slurmd", "sbatch", "scontrol")


def reason_to_skip():
    """Why no cluster can be started here; none when one can."""
    if os.geteuid() != 0:
        return "Slurm's daemons have to be started by root"
    paths = os.environ["PATH"] + ":/usr/sbin:/sbin"
    missing = [name for name in NEEDED if shutil.which(name, path=paths) is None]
    return f"not installed: {', '.join(missing)}" if missing else None


def free_ports(count):
    """Ports that nobody listens on."""
    sockets = [socket.create_server(("127.0.0.1", 0)) for _ in range(count)]
    ports = [one.getsockname()[1] for one in sockets]
    for one in sockets:
        one.close()
    return ports


def die_with_parent():
    """Called in a child before it becomes another program: when what started it is killed, it is, too."""
    kill_when_the_parent_ends = 1
    ctypes.CDLL(None).prctl(kill_when_the_parent_ends, signal.SIGKILL)


class Cluster:
    """Starts the daemons; ends those that it has started."""

    def __init__(self, folder, max_array_size=1001, cpus=2):
        self.folder = folder
        self.daemons = {}
        for name in ("state", "spool", "munge"):
            (folder / name).mkdir(mode=0o755)
        control, node = free_ports(2)
        self.socket = folder / "munge" / "socket"
        host = socket.gethostname()
        (folder / "slurm.conf").write_text(
            f"""ClusterName=test
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={control}
SlurmdPort={node}
SlurmUser=root
AuthType=auth/munge
AuthInfo=socket={self.socket}
CredType=cred/munge
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.pid
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/slurmd.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SchedulerType=sched/builtin
SchedulerParameters=batch_sched_delay=0,sched_interval=1
JobAcctGatherType=jobacct_gather/none
MpiDefault=none
ReturnToService=2
MaxArraySize={max_array_size}
SlurmdParameters=config_overrides
SlurmdTimeout=10
KillWait=1
MinJobAge=300
NodeName={host} NodeAddr=127.0.0.1 CPUs={cpus} State=UNKNOWN
PartitionName=all Nodes={host} Default=YES MaxTime=INFINITE State=UP
"""
        )
        self.environment = {**os.environ, "SLURM_CONF": str(folder / "slurm.conf")}
        self.environment["PATH"] += ":/usr/sbin:/sbin"

    def start(self, name):
        """Start a daemon in the foreground of a session of its own."""
        key = self.folder / "munge" / "key"
        if not key.exists():
            key.touch(mode=0o600)
            key.write_bytes(os.urandom(128))
        munged = ["munged", "--foreground", "--force", f"--socket={self.socket}", f"--key-file={key}"]
        munged += [f"--{kind}-file={self.folder}/munge/{kind}" for kind in ("log", "pid", "seed")]
        commands = {"munged": munged, "slurmctld": ["slurmctld", "-D"], "slurmd": ["slurmd", "-D"]}
        log = open(self.folder / f"{name}.out", "ab")
        self.daemons[name] = subprocess.Popen(
            commands[name],
            env=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=log,
            stderr=log,
            start_new_session=True,
            preexec_fn=die_with_parent,
        )
        log.close()

    def kill(self, name):
        """kill -9 of a daemon."""
        self.daemons[name].kill()
        self.daemons[name].wait()

    def ask(self, *command):
        """What a client of the cluster prints."""
        return subprocess.run(command, env=self.environment, capture_output=True, text=True, check=False).stdout

    def wait_for(self, condition, what, seconds=180):
        """Wait until something holds, and fail with the daemons' logs when it never does."""
        end = time.monotonic() + seconds
        while not condition():
            self.put_back()
            if time.monotonic() > end:
                logs = "\n".join(path.read_text()[-1500:] for path in self.folder.glob("*.log"))
                raise AssertionError(f"{what} did not happen: {self.ask('sinfo')}{self.ask('squeue')}{logs}")
            time.sleep(0.1)

    def wait_until_idle(self):
        """Wait until no job is left."""
        self.wait_for(lambda: not self.ask("squeue", "--noheader").strip(), "the end of all jobs", 300)

    def put_back(self):
        """Do what an administrator does after a crash: slurmctld drains a node that runs what it has forgotten."""
        if "drain" in self.ask("sinfo", "--noheader", "--format=%T"):
            self.ask("scontrol", "update", f"NodeName={socket.gethostname()}", "State=RESUME")
        held = self.ask("squeue", "--noheader", "--states=PENDING", "--format=%A %r").splitlines()
        for job in {line.split()[0] for line in held if "Held" in line}:
            self.ask("scontrol", "release", job)

    def is_up(self):
        """Whether the node takes jobs."""
        return self.ask("sinfo", "--noheader", "--format=%T").strip() in ("idle", "mixed", "allocated")

    def __enter__(self):
        for name in ("munged", "slurmctld", "slurmd"):
            self.start(name)
            if name == "munged":
                self.wait_for(self.socket.exists, "munged's socket")
        self.wait_for(self.is_up, "a node that is up")
        return self

    def __exit__(self, *_):
        self.ask("scancel", "--user=root")
        for daemon in reversed(self.daemons.values()):
            if daemon.poll() is None:
                daemon.send_signal(signal.SIGTERM)
                try:
                    daemon.wait(10)
                except subprocess.TimeoutExpired:
                    daemon.kill()
                    daemon.wait()
