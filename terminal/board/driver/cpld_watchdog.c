// SPDX-License-Identifier: GPL-2.0 OR MIT
/*
 * Stands in for the watchdog of the terminal's CPLD, with a timer of the kernel.
 *
 * It has the control files of the real one, /proc/cpld/watchdog/, and accepts the values that the
 * terminal's watchdog library writes to them. It shows that the terminal reboots if a program stops
 * writing them. It shows nothing about the real CPLD, of which it assumes:
 *
 *  - The byte of the first counter selects the bite time. The library writes only this value whole.
 *    Of the other counters and of the reset strobe just the first character arrives, always "0".
 *  - One character written to control-all starts or re-arms the watchdog; "0x0" stops it.
 *  - control-en reads "1\n" while the watchdog is armed and "0\n" otherwise.
 *  - Only a stop or the reboot disarms it.
 *
 * The kernel parameter cpld_watchdog.divisor=N makes it bite N times earlier.
 */
#define pr_fmt(fmt) KBUILD_MODNAME ": " fmt

#include <linux/hrtimer.h>
#include <linux/init.h>
#include <linux/moduleparam.h>
#include <linux/mutex.h>
#include <linux/proc_fs.h>
#include <linux/reboot.h>
#include <linux/string.h>
#include <linux/uaccess.h>

enum control { COUNTER0, COUNTER1, COUNTER2, COUNTER3, CONTROL_EN, CONTROL_RESET, CONTROL_ALL };

/* The real board misspells the names of all four counters, too. */
static const char *const names[] = {
	[COUNTER0] = "intial-cnt0",    [COUNTER1] = "intial-cnt1",
	[COUNTER2] = "intial-cnt2",    [COUNTER3] = "intial-cnt3",
	[CONTROL_EN] = "control-en",   [CONTROL_RESET] = "control-reset",
	[CONTROL_ALL] = "control-all",
};

/* The lowest byte of each count at 3.125 MHz, and the seconds that it selects. */
static const struct {
	const char *text;
	unsigned int seconds;
} bite_times[] = { { "0xf0", 30 }, { "0xe0", 60 }, { "0x60", 300 } };

static unsigned int divisor = 1;
module_param(divisor, uint, 0444);

static DEFINE_MUTEX(lock);
static struct hrtimer timer;
static unsigned int seconds; /* chosen by the first counter, for the next start */
static bool announced;	     /* the library starts the board twice in a row */

static enum hrtimer_restart bite(struct hrtimer *unused)
{
	pr_emerg("BITES: the terminal reboots\n");
	emergency_restart();
	return HRTIMER_NORESTART;
}

static int choose(const char *text)
{
	int i;

	for (i = 0; i < ARRAY_SIZE(bite_times); i++) {
		if (strcmp(text, bite_times[i].text) == 0) {
			seconds = bite_times[i].seconds;
			announced = false;
			return 0;
		}
	}
	pr_warn("no bite time begins with the byte %s\n", text);
	return -EINVAL;
}

static int start_or_stop(const char *text)
{
	if (strcmp(text, "0x0") == 0) {
		hrtimer_cancel(&timer);
		pr_info("stopped\n");
		return 0;
	}
	if (strcmp(text, "0") != 0 || seconds == 0)
		return -EINVAL;
	hrtimer_start(&timer, ns_to_ktime(div_u64((u64)seconds * NSEC_PER_SEC, divisor)),
		      HRTIMER_MODE_REL);
	if (!announced)
		pr_info("armed with %u s\n", seconds);
	announced = true;
	return 0;
}

static ssize_t control_write(struct file *file, const char __user *buffer, size_t length,
			     loff_t *position)
{
	const enum control control = (uintptr_t)pde_data(file_inode(file));
	char text[8] = "";
	int error = 0;

	if (length >= sizeof(text))
		return -EINVAL;
	if (copy_from_user(text, buffer, length))
		return -EFAULT;
	mutex_lock(&lock);
	if (control == COUNTER0)
		error = choose(text);
	else if (control == CONTROL_ALL)
		error = start_or_stop(text);
	mutex_unlock(&lock);
	return error ? error : length;
}

static ssize_t control_read(struct file *file, char __user *buffer, size_t length, loff_t *position)
{
	const enum control control = (uintptr_t)pde_data(file_inode(file));
	const char *text = "";

	if (control == CONTROL_EN)
		text = hrtimer_active(&timer) ? "1\n" : "0\n";
	return simple_read_from_buffer(buffer, length, position, text, strlen(text));
}

static const struct proc_ops control_ops = {
	.proc_read = control_read,
	.proc_write = control_write,
	.proc_lseek = default_llseek,
};

static int __init cpld_watchdog_init(void)
{
	struct proc_dir_entry *cpld = proc_mkdir("cpld", NULL);
	struct proc_dir_entry *directory = cpld ? proc_mkdir("watchdog", cpld) : NULL;
	uintptr_t control;

	if (!directory)
		return -ENOMEM;
	if (divisor == 0)
		divisor = 1;
	hrtimer_init(&timer, CLOCK_MONOTONIC, HRTIMER_MODE_REL);
	timer.function = bite;
	for (control = COUNTER0; control <= CONTROL_ALL; control++) {
		if (!proc_create_data(names[control], 0600, directory, &control_ops,
				      (void *)control))
			return -ENOMEM;
	}
	return 0;
}
device_initcall(cpld_watchdog_init);
