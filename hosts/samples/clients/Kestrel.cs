// The component for programs of .NET, late bound, with its events as functions: they need no interop assembly beside them
// then. C# 5 or newer, .NET Framework 4 or .NET Core 2.1 or newer; compiled into Kestrel.Interop.dll for the C# and VB samples,
// and by PowerShell's Add-Type as it is.
//
// In Visual Studio, "Add Reference > COM > Kestrel code rules 1.0" makes classes of the type library instead. An event that has
// the name of a method (Save, Load) is then reached through the interface of the events alone:
//     ((Kestrel.__CodeClass_Event)rule).Save += (ref string value, ref bool saved) => { saved = Store(value); };
// and in VB by "WithEvents rule As Kestrel.CodeClass" and "Handles rule.Save", which needs nothing of the kind.
using System;
using System.Reflection;
using System.Runtime.ExceptionServices;
using System.Runtime.InteropServices;
using System.Runtime.InteropServices.ComTypes;

namespace Kestrel.Interop
{
    // An object of the component by the names of its members. What it refuses is a COMException with its number and text.
    // C# may say "dynamic" instead, on .NET Framework and from .NET 5 on.
    public class Late
    {
        public Late(object target)
        {
            Target = target;
        }

        public object Target { get; private set; }

        // The value of a property, or of a member of a collection: Get("Band", "Number").
        public object Get(string name, params object[] arguments)
        {
            return Invoke(name, BindingFlags.GetProperty, arguments);
        }

        public Late GetObject(string name, params object[] arguments)
        {
            return new Late(Get(name, arguments));
        }

        public void Set(string name, object value)
        {
            Invoke(name, BindingFlags.SetProperty, new[] { value });
        }

        // What is left out is Type.Missing, or nothing at the end.
        public object Call(string name, params object[] arguments)
        {
            return Invoke(name, BindingFlags.InvokeMethod, arguments);
        }

        public Late CallForObject(string name, params object[] arguments)
        {
            return new Late(Call(name, arguments));
        }

        object Invoke(string name, BindingFlags kind, object[] arguments)
        {
            try
            {
                return Target.GetType().InvokeMember(name, kind, null, Target, arguments);
            }
            catch (TargetInvocationException refused)
            {
                ExceptionDispatchInfo.Capture(refused.InnerException).Throw();
                throw;
            }
        }
    }

    // The events of a rule that programs answer, each with its dispatch id; one that is not here passes unanswered.
    [ComVisible(true), Guid("5FCF6617-4BF4-4628-AC4C-29A59E8E09EF"), InterfaceType(ComInterfaceType.InterfaceIsIDispatch)]
    public interface IRuleEvents
    {
        [DispId(1)] void Save(ref string value, ref bool saved);
        [DispId(11)] void GetLastCode(ref string filter, ref string value);
        [DispId(12)] void GetSettings(ref string name, ref string value);
    }

    [ComVisible(true), ClassInterface(ClassInterfaceType.None)]
    public sealed class RuleEvents : IRuleEvents
    {
        // From the filter to the last code that fits it, or to "".
        public Func<string, string> LastCode { get; set; }
        // From the name of the rule to its stored definition.
        public Func<string, string> Settings { get; set; }
        // Stores a definition and says whether it is stored.
        public Func<string, bool> Store { get; set; }

        public void Save(ref string value, ref bool saved)
        {
            saved = Store != null && Store(value);
        }

        public void GetLastCode(ref string filter, ref string value)
        {
            if (LastCode != null) value = LastCode(filter);
        }

        public void GetSettings(ref string name, ref string value)
        {
            if (Settings != null) value = Settings(name);
        }
    }

    // A new rule, connected to its events.
    public sealed class Rule : Late
    {
        readonly IConnectionPoint point;
        readonly int cookie;

        public Rule() : base(Activator.CreateInstance(Type.GetTypeFromProgID("Kestrel.CodeClass", true)))
        {
            Events = new RuleEvents();
            var source = typeof(IRuleEvents).GUID;
            ((IConnectionPointContainer)Target).FindConnectionPoint(ref source, out point);
            point.Advise(Events, out cookie);
        }

        public RuleEvents Events { get; private set; }

        public void Close()
        {
            point.Unadvise(cookie);
        }
    }
}
